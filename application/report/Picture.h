#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "application/session/Snapshot.h"

namespace Program {

// How a member's bay is known.
enum class Sight {
  Nowhere,     // it is not
  Seen,        // the disk is in it
  Inferred,    // it is where the other disk is not
  Remembered,  // the disk was seen there last
};

struct PicturedMember {
  std::string uuid;
  RAIDMonitoring::MemberState state = RAIDMonitoring::MemberUnknown;
  int bay = 0;  // 0 with Sight::Nowhere
  Sight sight = Sight::Nowhere;
};
bool operator==(const PicturedMember& a, const PicturedMember& b);

struct PicturedVolume {
  std::string uuid;
  std::string name;  // the UUID when there is none
  RAIDMonitoring::RAIDLevel level = RAIDMonitoring::LevelUnknown;
  RAIDMonitoring::RAIDVolumeState state = RAIDMonitoring::VolumeUnknown;
  std::vector<PicturedMember> members;
};
bool operator==(const PicturedVolume& a, const PicturedVolume& b);

// One enclosure at one moment, as a report shows it.
struct Picture {
  std::uint64_t uid = 0;
  std::string name;
  bool up = false;          // its disks can be seen
  std::vector<bool> disks;  // in which of its bays, from 1 on, a disk is seen
  std::vector<PicturedVolume> volumes;
};
bool operator==(const Picture& a, const Picture& b);

// Takes the pictures of a run, and remembers in which bay it saw each disk last.
class PictureTaker {
 public:
  Picture pictureOf(const EnclosureSlots& enclosure);

 private:
  PicturedMember memberOf(std::uint64_t device, const MemberSnapshot& member,
                          const MemberLocation& location, bool inferable);

  std::map<std::pair<std::uint64_t, std::string>, int> _lastBays;  // by device and member
};

}  // namespace Program
