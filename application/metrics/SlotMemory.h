#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "application/session/Snapshot.h"

namespace Program {

// The volumes of a look with the bays of their disks. To ask where a disk sits walks the registry
// and leaves references behind, so nobody is asked again about a volume of which nothing has
// changed: not its own state, nor any disk's state or path, nor what is known of the enclosure.
class SlotMemory {
 public:
  std::vector<EnclosureVolumes> volumesOf(const std::vector<RAIDMonitoring::RAIDHost*>& hosts);

 private:
  struct Known {
    DeviceSnapshot device;
    VolumeSnapshot asked;  // without slots
    VolumeSnapshot answered;
  };
  using Key = std::pair<std::uint64_t, std::string>;  // the device and the volume

  VolumeSnapshot slotsOf(const RAIDMonitoring::RAIDVolume& volume, const DeviceSnapshot& device,
                         std::map<Key, Known>& present);

  std::map<Key, Known> _known;  // of the last look
};

}  // namespace Program
