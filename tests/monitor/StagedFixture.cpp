#include "tests/monitor/StagedFixture.h"

#include <algorithm>

#include "model/RAIDHost.h"

namespace MonitorTest {

using namespace RAIDMonitoring;

StagedFixture::StagedFixture() : _monitor(RAIDMonitor::CreateRAIDMonitor()) {
  _monitor->addClient(&_client);
  _monitor->listenTo(&_discovery);
  _client.onEvent([this](const std::string&, RAIDVolume* volume) {
    keep(volume);
    _told.push_back(volume);
  });
}

// A set that hangs under several members has left references on its volume that nobody owns: they
// are given back here, when everybody else is through.
StagedFixture::~StagedFixture() {
  std::vector<Pelago::Reference<RAIDHost>> hosts;
  for (auto* host : _monitor->raidHosts())
    hosts.emplace_back(host);
  _monitor->shutdown();
  for (const auto& host : hosts) {
    for (auto* volume : host->raidVolumes()) {
      keep(volume);
      host->removeRAIDVolume(volume);
    }
  }
  for (const auto& volume : _kept) {
    while (volume->references() > 1)
      volume->deref();
  }
}

Story StagedFixture::refresh() {
  _monitor->refresh();
  return told();
}

void StagedFixture::plugIn(const TestSupport::EnclosureBuilder& enclosure) {
  _discovery.deviceAppeared({enclosure.uid(), 4});
}

void StagedFixture::unplug(TestSupport::EnclosureBuilder& enclosure) {
  enclosure.unplug();
  _discovery.deviceDisappeared({enclosure.uid(), 4});
}

int StagedFixture::references(const RAIDVolume* volume) const {
  const bool kept = std::any_of(_kept.begin(), _kept.end(),
                                [&](const auto& reference) { return reference.get() == volume; });
  return volume->references() - (kept ? 1 : 0);
}

void StagedFixture::keep(RAIDVolume* volume) {
  for (const auto& kept : _kept) {
    if (kept.get() == volume) return;
  }
  _kept.emplace_back(volume);
}

}  // namespace MonitorTest
