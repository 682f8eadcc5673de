#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/faults/Scenarios.h"

namespace FaultTest {

// What was tried of a scenario.
struct Tally {
  std::uint64_t operations = 0;
  unsigned stride = 1;  // how many faults one that was tried stands for
  std::uint64_t faults = 0;
  std::vector<std::string> complaints;  // no more than a few: then the rest is not tried any more
};

// Which faults of a scenario: they can be dealt out to several programs that run side by side.
struct Share {
  unsigned number = 0;
  unsigned of = 1;
  unsigned stride = 0;  // every so many; 0: as it can be afforded
};

// Plays the scenario as it is, and then for every fault from the last call into the library before
// it on, in a process that branches off there (Branch.h): each operation that can fail fails once,
// fails with all that follow, and, where it can, succeeds with a null handle. A branch that crashes
// or goes on for ever is complained of like any other. Where all faults would take too long, only
// every so many; FAULT_STRIDE in the environment says how many instead.
Tally tryRegistryFaults(const Scenario& scenario, Share share = {});

// The same for every allocation, which fails once.
Tally tryAllocationFailures(const Scenario& scenario, Share share = {});

}  // namespace FaultTest
