#include <gtest/gtest.h>

#include <cstdio>

#include "tests/faults/FaultLoop.h"

namespace FaultTest {
namespace {

TEST(AllocationFailures, EveryAllocationOfEveryStagedScenarioMayFail) {
  unsigned long long failures = 0;
  for (const Scenario& scenario : stagedScenarios()) {
    const Tally tally = tryAllocationFailures(scenario);
    for (const auto& complaint : tally.complaints)
      ADD_FAILURE() << complaint;
    std::printf("%s: %llu allocations, stride %u, %llu failures\n", scenario.name.c_str(),
                static_cast<unsigned long long>(tally.operations), tally.stride,
                static_cast<unsigned long long>(tally.faults));
    failures += tally.faults;
  }
  std::printf("%llu allocation failures were tried\n", failures);
}

}  // namespace
}  // namespace FaultTest
