#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "model/RAIDVolume.h"
#include "platform/pelago/Reference.h"
#include "tests/model/StubMember.h"
#include "tests/monitor/ScriptedHost.h"
#include "tests/monitor/ScriptedMonitor.h"
#include "tests/support/RecordingClient.h"

namespace MonitorTest {

using ModelTest::StubMember;
using RAIDMonitoring::RAIDVolume;

// A monitor with hosts and volumes that a test drives by hand, and one client.
//
// Ownership: the scene keeps one reference of its own on every host and volume, so that each can be
//            looked at to the end; a volume that is filed with its host has two (Filed), one that
//            is announced besides three (Announced). Its end gives back what scene, hosts and
//            monitor hold; a test that takes a reference out of these accounts puts it back.
class Scene {
 public:
  static constexpr int Filed = 2;
  static constexpr int Announced = 3;

  Scene();
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  ScriptedMonitor& monitor() { return *_monitor; }
  TestSupport::RecordingClient& client() { return _client; }
  // What the client was told since it was last asked.
  std::vector<std::string> told() { return _client.take(); }

  // A host that the monitor will make for the device with this identifier.
  ScriptedHost* makeHost(std::uint64_t id);
  // Two such hosts (1 and 2, or 2 and 1) in the order in which the monitor looks at them.
  std::pair<ScriptedHost*, ScriptedHost*> makeTwoHosts();
  void appear(ScriptedHost* host);
  void disappear(ScriptedHost* host);

  // A volume with the host given as its own, not filed.
  RAIDVolume* makeVolume(ScriptedHost* host, const std::string& uuid,
                         RAIDMonitoring::RAIDVolumeState state = RAIDMonitoring::VolumeOnline);
  // The same, filed.
  RAIDVolume* file(ScriptedHost* host, const std::string& uuid,
                   RAIDMonitoring::RAIDVolumeState state = RAIDMonitoring::VolumeOnline);

  // Shuts the monitor down and deletes it.
  void end();
  // Deletes it as it is.
  void deleteMonitor() { _monitor.reset(); }

 private:
  std::unique_ptr<ScriptedMonitor> _monitor;
  TestSupport::RecordingClient _client;
  std::map<std::uint64_t, Pelago::Reference<ScriptedHost>> _hosts;
  std::vector<Pelago::Reference<RAIDVolume>> _volumes;
};

// A new member that only the volume keeps.
StubMember* addMember(RAIDVolume* volume, const std::string& uuid,
                      RAIDMonitoring::MemberState state = RAIDMonitoring::MemberOnline);

}  // namespace MonitorTest
