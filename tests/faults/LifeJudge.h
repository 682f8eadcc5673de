#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "tests/faults/KeptModel.h"
#include "tests/faults/Life.h"

namespace FaultTest {

// What a scenario ends with: the views after one refresh more, and two, and what the first of these
// did at the seam.
struct Ending {
  View first;
  std::vector<TraceEvent> steps;
  View second;
};

// Looks at the end of one life, and says what is wrong about it.
class LifeJudge {
 public:
  // Before the life begins. `unreadable` as in Scenario.
  explicit LifeJudge(const std::set<std::string>& unreadable);

  // What was played is over: lets it settle and ends it. Compared with the clean ending, where
  // there is one.
  Ending judge(Life& life, const Ending* clean);
  // After the life: whether all that it has asked for was given back.
  void judgeMemory();

  void complain(const std::string& text);
  const std::vector<std::string>& complaints() const { return _complaints; }

 private:
  void complainAll(const char* before, const std::vector<std::string>& texts);
  void settle(Kept expected, const KeptReferences& found);

  const std::set<std::string>& _unreadable;
  std::size_t _allocations;
  std::vector<std::string> _complaints;
};

}  // namespace FaultTest
