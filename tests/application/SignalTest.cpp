#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;

// Each waits for the first line, after which the paced replay has many seconds to go.
TEST(Signal, InterruptAndTerminationEndAWatchInOrder) {
  for (const int signal : {SIGINT, SIGTERM}) {
    RunningProgram program({"watch", "--json", "--handles", "--pace"});
    program.waitForLines(1);
    program.send(signal);
    const Result result = program.finish();
    EXPECT_EQ(0, result.status) << signal;
    EXPECT_THAT(linesOf(result.out).back(), HasSubstr(R"("event": "handles", "kept": [)"));
  }
}

TEST(Signal, InterruptEndsAReplayThatDoesNotWait) {
  RunningProgram program({"watch", "--json", "--handles", "--until", "9223372036854775807"});
  program.waitForLines(15);
  program.send(SIGINT);
  const Result result = program.finish();
  EXPECT_EQ(0, result.status);
  EXPECT_THAT(linesOf(result.out).back(), HasSubstr(R"("event": "handles", "kept": [)"));
}

}  // namespace
}  // namespace ProgramTest
