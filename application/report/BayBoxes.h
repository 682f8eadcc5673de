#pragma once

#include <string>
#include <vector>

#include "application/report/Picture.h"

namespace Program {

// What is drawn for a bay, or for a member that no bay shows. Points into the picture.
struct BayBox {
  int bay = 0;        // 0: not known
  std::string state;  // the member's, in words; "empty" or "other disk" without one
  const PicturedVolume* volume = nullptr;  // both null without a member
  const PicturedMember* member = nullptr;
  std::string note;  // what has to be said of it
};

struct BayBoxes {
  std::vector<BayBox> bays;       // from 1 on
  std::vector<BayBox> elsewhere;  // members without a bay of their own
};

// A bay goes to the member that is seen in it, else to the one that it is inferred for, else to the
// one that was seen there last; of several, to the first.
BayBoxes boxesOf(const Picture& picture);

}  // namespace Program
