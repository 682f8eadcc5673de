#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::EndsWith;

const std::vector<Arguments> everyCommand = {
    {"watch"},          {"watch", "--json"}, {"list"},
    {"list", "--json"}, {"slots"},           {"slots", "--json"},
    {"--help"},         {"--version"},       {"watch", "--json", "--handles", "--log"}};

TEST(FailedOutput, AFullDiskIsOneLineOnStandardErrorAndStatusOne) {
  Launch launch;
  launch.output = Launch::Output::File;
  launch.file = "/dev/full";
  for (const Arguments& arguments : everyCommand) {
    const Result result = run(arguments, launch);
    EXPECT_EQ(1, result.status) << arguments.front();
    EXPECT_THAT(result.err, EndsWith("raidmonitor: standard output: No space left on device\n"));
  }
}

TEST(FailedOutput, AClosedStandardOutputIsOneLineOnStandardErrorAndStatusOne) {
  Launch launch;
  launch.output = Launch::Output::Closed;
  for (const Arguments& arguments : everyCommand) {
    const Result result = run(arguments, launch);
    EXPECT_EQ(1, result.status) << arguments.front();
    EXPECT_THAT(result.err, EndsWith("raidmonitor: standard output: Bad file descriptor\n"));
  }
}

TEST(FailedOutput, EndsAWatchAtItsFirstLine) {
  Launch launch;
  launch.output = Launch::Output::File;
  launch.file = "/dev/full";
  // Would take centuries otherwise.
  const Result result = run({"watch", "--until", "9223372036854775807"}, launch);
  EXPECT_EQ(1, result.status);
}

TEST(FailedOutput, APipeThatNobodyReadsEndsTheProgramAsUsual) {
  RunningProgram program({"watch", "--log", "--until", "9223372036854775807"});
  program.waitForLines(1);
  program.closeOutput();
  EXPECT_EQ(-SIGPIPE, program.finish().status);
}

}  // namespace
}  // namespace ProgramTest
