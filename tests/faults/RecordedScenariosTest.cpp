#include <gtest/gtest.h>

#include <algorithm>

#include "tests/faults/Scenarios.h"

namespace FaultTest {
namespace {

std::vector<TraceEvent> traceOf(const Scenario& scenario) {
  const NoOutput silence;
  Life life;
  std::vector<TraceEvent> whole;
  const auto note = [&] { whole.insert(whole.end(), life.trace().begin(), life.trace().end()); };
  life.beforeCalls(note);
  scenario.play(life);
  note();
  return whole;
}

TEST(RecordedScenarios, WhatIsLeftOutOfThemIsNeverAskedFor) {
  for (const std::string& name : recordingNames()) {
    const auto whole = traceOf(wholeRecordedScenario(name));
    const auto used = traceOf(recordedScenario(name));
    ASSERT_LT(0U, whole.size());
    ASSERT_EQ(whole.size(), used.size()) << name;
    EXPECT_TRUE(std::equal(whole.begin(), whole.end(), used.begin(), isSameStep)) << name;
  }
}

}  // namespace
}  // namespace FaultTest
