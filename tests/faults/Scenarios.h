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

// Enclosures that are staged by hand.
std::vector<Scenario> stagedScenarios();

// The demo and the recordings of the tests: their names, and one of them.
std::vector<std::string> recordingNames();
Scenario recordedScenario(const std::string& name);

// The same with all that a recording says, of which recordedScenario() leaves out what the library
// never asks for: staging it takes most of a life's time.
Scenario wholeRecordedScenario(const std::string& name);

}  // namespace FaultTest
