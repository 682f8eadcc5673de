#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "platform/pelago/DiscoveryManager.h"
#include "platform/pelago/Reference.h"
#include "tests/support/EnclosureBuilder.h"
#include "tests/support/RecordingClient.h"
#include "tests/support/RegistryFixture.h"

namespace MonitorTest {

using Story = std::vector<std::string>;

// The monitor from the factory, on a staged registry and fed by discovery, with one client. Every
// volume that the client is told of is kept to the end by the fixture, with one reference more.
class StagedFixture : public TestSupport::RegistryFixture {
 protected:
  StagedFixture();
  ~StagedFixture() override;

  RAIDMonitoring::RAIDMonitor& monitor() { return *_monitor; }
  TestSupport::HostTree& tree() { return _tree; }
  Pelago::DiscoveryManager& discovery() { return _discovery; }
  Story told() { return _client.take(); }
  Story refresh();

  void plugIn(const TestSupport::EnclosureBuilder& enclosure);
  void unplug(TestSupport::EnclosureBuilder& enclosure);

  // References on a volume apart from the fixture's own.
  int references(const RAIDMonitoring::RAIDVolume* volume) const;
  // The volume that the client was told of last.
  RAIDMonitoring::RAIDVolume* lastTold() const { return _told.back(); }

 private:
  void keep(RAIDMonitoring::RAIDVolume* volume);

  TestSupport::HostTree _tree;
  Pelago::DiscoveryManager _discovery;
  TestSupport::RecordingClient _client;
  std::unique_ptr<RAIDMonitoring::RAIDMonitor> _monitor;
  std::vector<Pelago::Reference<RAIDMonitoring::RAIDVolume>> _kept;
  std::vector<RAIDMonitoring::RAIDVolume*> _told;
};

}  // namespace MonitorTest
