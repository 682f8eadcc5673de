#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/faults/Life.h"

namespace FaultTest {

// Something that happens to a monitor, always in the same way.
struct Scenario {
  std::string name;
  std::function<void(Life&)> play;
  // The UUIDs of sets and members that say nothing known of their state or level in the end.
  std::set<std::string> unreadable = {};
};

// Enclosures that are staged by hand, and the demo and the recordings of the tests.
std::vector<Scenario> stagedScenarios();
std::vector<Scenario> recordedScenarios();

}  // namespace FaultTest
