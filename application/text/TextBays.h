#pragma once

#include <optional>
#include <string>
#include <vector>

#include "application/session/Snapshot.h"
#include "application/text/TextScreen.h"

namespace Program {

struct PlacedMember {
  const VolumeSnapshot* volume = nullptr;
  const MemberSnapshot* member = nullptr;
  MemberLocation location;

  bool inferred() const { return location.slot != location.inferred; }
  bool inTrouble() const;  // failed, offline or absent
};

struct Bay {
  int number = 0;
  std::optional<PlacedMember> member;
  bool disk = false;  // one that is seen, whether it is the member's or not
};

// Who sits where in an enclosure. Points into what it was made of.
struct Bays {
  std::vector<Bay> bays;               // from 1 on; none when the model's are not known
  std::vector<PlacedMember> unplaced;  // those that no bay of the enclosure shows
  bool anyInferred = false;
};
Bays baysOf(const EnclosureSlots& enclosure);

// The bays side by side, as boxes; nothing when there are none.
std::string picture(const Screen& screen, const Bays& bays);

}  // namespace Program
