#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/faults/Life.h"
#include "tests/faults/Scenarios.h"

namespace FaultTest {

// What a scenario ends with: the views after one refresh more, and two.
struct Ending {
  View first;
  View second;
};

// What was tried of a scenario.
struct Tally {
  std::uint64_t operations = 0;
  unsigned stride = 1;  // how many faults one that was tried stands for
  std::uint64_t faults = 0;
  std::vector<std::string> complaints;  // no more than a few
};

// The faults of a scenario can be dealt out to several programs that run side by side.
struct Share {
  unsigned number = 0;
  unsigned of = 1;
};

// Plays the scenario as it is, and then once for every fault: each operation that can fail fails
// once, fails with all that follow, and, where it can, succeeds with a null handle. Where all of
// them would take too long (the longest scenarios, and under sanitizers), only every so many;
// FAULT_STRIDE in the environment says how many instead.
Tally tryRegistryFaults(const Scenario& scenario, Share share = {});

// The same for every allocation, which fails once.
Tally tryAllocationFailures(const Scenario& scenario, Share share = {});

}  // namespace FaultTest
