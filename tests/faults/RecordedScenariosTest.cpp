#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "tests/faults/Scenarios.h"

namespace FaultTest {
namespace {

// Handles are numbered anew in each life.
bool isSame(const TraceEvent& a, const TraceEvent& b) {
  using Kind = TraceEvent::Kind;
  const bool isHandle = a.kind != Kind::ConformsTo && a.kind != Kind::Number;
  return a.kind == b.kind && a.options == b.options && a.id == b.id &&
         std::strcmp(a.name, b.name) == 0 && (isHandle || a.result == b.result) &&
         (a.result == 0) == (b.result == 0);
}

std::vector<TraceEvent> traceOf(const Scenario& scenario) {
  const NoOutput silence;
  Life life;
  scenario.play(life);
  return life.trace();
}

TEST(RecordedScenarios, WhatIsLeftOutOfThemIsNeverAskedFor) {
  for (const std::string& name : recordingNames()) {
    const auto whole = traceOf(wholeRecordedScenario(name));
    const auto used = traceOf(recordedScenario(name));
    ASSERT_LT(0U, whole.size());
    ASSERT_EQ(whole.size(), used.size()) << name;
    EXPECT_TRUE(std::equal(whole.begin(), whole.end(), used.begin(), isSame)) << name;
  }
}

}  // namespace
}  // namespace FaultTest
