#pragma once

#include <string>
#include <vector>

#include "application/report/Story.h"

namespace Program {

// One line of a report's table of events, ready to be shown.
struct EventLine {
  // How it is marked, in a word and by style.
  enum class Mark { New, Now, Gone, Seen };
  enum class Gravity { Plain, Good, Uneasy, Bad };

  Story::Moment time = 0;
  Mark mark = Mark::New;
  Gravity gravity = Gravity::Plain;
  std::string text;
  std::string enclosure;
};

// What the library reported, one line for one cause: what it reports twice is one line, and so is
// an enclosure that goes with its volumes. Among them, marked as seen, what the bays showed in
// between: disks that went and came.
std::vector<EventLine> eventLinesOf(const Story& story);

}  // namespace Program
