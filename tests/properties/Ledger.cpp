#include "tests/properties/Ledger.h"

#include "model/RAIDHost.h"

namespace PropertyTest {

using FaultTest::Life;
using RAIDMonitoring::RAIDHost;
using RAIDMonitoring::RAIDVolume;

void Ledger::noteBeforeRefresh(Life& life) {
  _onFile.clear();
  for (const RAIDHost* host : life.hosts()) {
    for (RAIDVolume* volume : host->raidVolumes())
      _onFile[volume] = {host->deviceID(), volume->uuid()};
  }
}

// Of the hosts of a device that was reported twice, the first one leaves.
void Ledger::noteLeaving(Life& life, std::uint64_t uid) {
  for (const RAIDHost* host : life.hosts()) {
    if (host->deviceID() != uid) continue;
    for (RAIDVolume* volume : host->raidVolumes())
      ++_keptForGood[volume];
    return;
  }
}

std::vector<std::string> Ledger::differences(Life& life) const {
  std::map<RAIDVolume*, int> expected = _keptForGood;
  for (const auto& [volume, references] : life.client().announcements())
    expected[volume] += references;
  for (const RAIDHost* host : life.hosts()) {
    for (RAIDVolume* volume : host->raidVolumes())
      ++expected[volume];
  }
  std::vector<std::string> lines;
  for (RAIDVolume* volume : life.client().kept()) {
    const int references = expected[volume] + 1;
    if (volume->references() == references) continue;
    lines.push_back("'" + volume->uuid() + "' has " + std::to_string(volume->references()) +
                    " references instead of " + std::to_string(references));
  }
  return lines;
}

}  // namespace PropertyTest
