#include "application/metrics/SlotMemory.h"

#include <algorithm>
#include <tuple>

#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"

namespace Program {

using RAIDMonitoring::RAIDHost;
using RAIDMonitoring::RAIDVolume;

namespace {

bool isSame(const DeviceSnapshot& a, const DeviceSnapshot& b) {
  return std::tie(a.bayCount, a.bridge) == std::tie(b.bayCount, b.bridge);
}

bool isSame(const MemberSnapshot& a, const MemberSnapshot& b) {
  return std::tie(a.uuid, a.state, a.path) == std::tie(b.uuid, b.state, b.path);
}

bool isSame(const VolumeSnapshot& a, const VolumeSnapshot& b) {
  return std::tie(a.name, a.level, a.state) == std::tie(b.name, b.level, b.state) &&
         std::equal(a.members.begin(), a.members.end(), b.members.begin(), b.members.end(),
                    [](const auto& one, const auto& other) { return isSame(one, other); });
}

}  // namespace

VolumeSnapshot SlotMemory::slotsOf(const RAIDVolume& volume, const DeviceSnapshot& device,
                                   std::map<Key, Known>& present) {
  VolumeSnapshot asked = volumeWithoutSlots(volume, device.uid);
  const Key key(device.uid, asked.uuid);
  const auto known = _known.find(key);
  const bool same = known != _known.end() && isSame(known->second.device, device) &&
                    isSame(known->second.asked, asked);
  VolumeSnapshot answered = same ? known->second.answered : volumeWithSlots(volume);
  present[key] = {device, std::move(asked), answered};
  return answered;
}

std::vector<EnclosureVolumes> SlotMemory::volumesOf(const std::vector<RAIDHost*>& hosts) {
  std::map<Key, Known> present;
  std::vector<EnclosureVolumes> enclosures;
  for (const RAIDHost* host : hosts) {
    EnclosureVolumes enclosure;
    enclosure.device = deviceOf(*host);
    for (const RAIDVolume* volume : host->raidVolumes())
      enclosure.volumes.push_back(slotsOf(*volume, enclosure.device, present));
    enclosures.push_back(std::move(enclosure));
  }
  _known = std::move(present);
  return enclosures;
}

}  // namespace Program
