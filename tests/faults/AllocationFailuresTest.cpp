#include <gtest/gtest.h>

#include <cstdio>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/RecordedShares.h"

namespace FaultTest {
namespace {

void report(const Tally& tally, const std::string& scenario) {
  for (const auto& complaint : tally.complaints)
    ADD_FAILURE() << complaint;
  std::printf("%s: %llu allocations, stride %u, %llu failures tried\n", scenario.c_str(),
              static_cast<unsigned long long>(tally.operations), tally.stride,
              static_cast<unsigned long long>(tally.faults));
  EXPECT_LT(0U, tally.faults);
}

TEST(AllocationFailures, EveryAllocationOfEveryStagedScenarioMayFail) {
  for (const Scenario& scenario : stagedScenarios())
    report(tryAllocationFailures(scenario), scenario.name);
}

class RecordedAllocationFailures : public testing::TestWithParam<RecordedShare> {};

TEST_P(RecordedAllocationFailures, EveryAllocationMayFail) {
  report(tryAllocationFailures(recordedScenario(GetParam().recording), GetParam().share),
         GetParam().recording);
}

INSTANTIATE_TEST_SUITE_P(Recordings, RecordedAllocationFailures,
                         testing::ValuesIn(recordedShares()), nameOfShare);

}  // namespace
}  // namespace FaultTest
