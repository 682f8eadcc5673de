#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "application/watch/WatchEvent.h"

namespace Program {

// A disk of a volume after an event, with what is new about it.
struct DiskNews {
  enum class Kind { None, State, Added, Removed, Moved };

  std::string uuid;
  RAIDMonitoring::MemberState state = RAIDMonitoring::MemberUnknown;
  int bay = -1;         // below 1: not known
  bool former = false;  // the bay is the one in which the disk was seen last
  Kind kind = Kind::None;
  int from = -1;  // of one that has moved
};

// Remembers in which bay each disk of each volume was last, as long as the volume is there: who is
// gone is not asked.
class KnownBays {
 public:
  // What the event says of the volume's disks, by bay; those whose bay is not known come last.
  std::vector<DiskNews> learn(const VolumeEvent& event);

 private:
  struct Disk {
    RAIDMonitoring::MemberState state;
    int bay;
    bool ambiguous;
  };
  using Disks = std::map<std::string, Disk>;  // by the member's UUID
  struct Volume {
    std::uint64_t enclosure = 0;  // the one whose bays these are
    bool told = false;
    Disks disks;
  };

  static bool wasSeen(const Disk& known, const MemberSnapshot& member);
  static DiskNews newsOf(const MemberSnapshot& member, int knownBay);
  static void compare(DiskNews& disk, const Disk* known, int knownBay);
  static void addRemoved(std::vector<DiskNews>& news, const Disks& before, const Disks& after,
                         bool sameEnclosure);

  std::map<std::string, Volume> _volumes;  // by UUID
};

}  // namespace Program
