#pragma once

#include <cstdint>
#include <string>

namespace RAIDMonitoring {

// What a volume is known to be in. The numbers are part of the binary interface.
enum RAIDVolumeState : std::int32_t {
  VolumeCrossDevice = -2,  // not wholly inside this host's device
  VolumeUnknown = -1,      // never stored by the library; a volume in this state counts as absent
  VolumeFailed = 0,        // also: its registry entry can't be found
  VolumeTerminating = 1,   // on its way out
  VolumeInitializing = 2,  // also: no known status has been read yet
  VolumeOnline = 3,        // in order
  VolumeDegraded = 4,      // usable, with a member that is not online
  VolumeOffline = 5,       // there, and not usable
};

// Stores in `state` what a set's status text means; a text that is none of the six leaves it alone.
// Any thread; nothing fails.
void readVolumeState(const std::string& status, RAIDVolumeState& state);

}  // namespace RAIDMonitoring
