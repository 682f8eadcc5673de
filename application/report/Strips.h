#pragma once

#include <string>
#include <vector>

#include "application/report/Story.h"

namespace Program {

// The states of one thing over the time of a story.
struct Strip {
  enum class Kind { Enclosure, Volume, Member };

  struct Run {
    Story::Moment from = 0;
    std::string state;  // in words; empty while it was not there
  };

  Kind kind = Kind::Enclosure;
  std::string label;      // the name; of a member "Bay 2", the one in which it was first
  std::string detail;     // of an enclosure its UID, if another has the same name
  std::vector<Run> runs;  // each lasts until the next, the last one until the end
};

// A strip for each enclosure, below it one for each of its volumes, below that one for each of the
// volume's members. Texts are as the registry has them.
std::vector<Strip> stripsOf(const Story& story);

}  // namespace Program
