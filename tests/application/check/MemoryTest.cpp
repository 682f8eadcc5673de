#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using testing::AnyOf;
using testing::StartsWith;

Result checkWithin(int kilobytes) {
  return runTool({"sh", "-c",
                  "ulimit -v " + std::to_string(kilobytes) + "; exec \"" + RAIDMONITOR_PROGRAM +
                      "\" check --until 8000"});
}

// Memory ends a little later every time, from where the program can't be loaded to where it
// answers. Before main() there may not be enough for an exception, and the library that reads
// property lists does not survive a lack of it: an end by a signal is no good news to anybody.
TEST(CheckWithoutMemory, IsUnknownAndNeverOKOrLessThanItIs) {
  constexpr int notLoaded = 127;
  constexpr int enough = 4;  // answers, one after the other
  int unknown = 0;
  for (int kilobytes = 8000, answers = 0; answers < enough; kilobytes += 150) {
    const Result result = checkWithin(kilobytes);
    if (result.status == notLoaded || result.status < 0) continue;
    answers = result.status == 2 ? answers + 1 : 0;
    unknown += result.status == 3 ? 1 : 0;
    ASSERT_THAT(result.status, AnyOf(2, 3)) << kilobytes << "\n" << result.out << result.err;
    EXPECT_THAT(result.out, StartsWith(result.status == 2 ? "CRITICAL - " : "UNKNOWN - "));
  }
  EXPECT_GT(unknown, 0);
}

}  // namespace
}  // namespace ProgramTest
