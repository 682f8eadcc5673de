#include "tests/faults/Branch.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <functional>

namespace FaultTest {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

BranchReport reportOf(const std::function<void()>& branch,
                      milliseconds longestSilence = milliseconds(60'000)) {
  if (auto report = branchOff(longestSilence)) return *report;
  branch();
  endBranch();
}

TEST(Branch, TellsLinesInTheirOrder) {
  const auto report = reportOf([] {
    tell("one");
    tell("");
    tell("of two\nlines");
  });
  EXPECT_THAT(report.lines, ElementsAre("one", "", "of two lines"));
  EXPECT_EQ("", report.failure);
}

TEST(Branch, TellsMoreThanAPipeHolds) {
  const auto report = reportOf([] {
    for (int line = 0; line < 2000; ++line)
      tell(std::string(100, 'x'));
  });
  EXPECT_EQ(2000U, report.lines.size());
  EXPECT_EQ("", report.failure);
}

TEST(Branch, ChangesNothingOfTheProcess) {
  int number = 1;
  reportOf([&] { number = 2; });
  EXPECT_EQ(1, number);
}

TEST(Branch, ThatCrashesIsToldFromOneThatEnds) {
  const auto report = reportOf([] {
    tell("before");
    std::abort();
  });
  EXPECT_THAT(report.lines, ElementsAre("before"));
  EXPECT_THAT(report.failure, HasSubstr("was ended by signal 6"));
}

TEST(Branch, ThatExitsInTheMiddleIsToldFromOneThatEnds) {
  EXPECT_EQ("ended in the middle", reportOf([] { _exit(0); }).failure);
  EXPECT_EQ("ended with status 3", reportOf([] { _exit(3); }).failure);
}

TEST(Branch, ThatGoesOnForEverIsEnded) {
  const auto report = reportOf(
      [] {
        for (;;)
          pause();
      },
      milliseconds(20));
  EXPECT_THAT(report.lines, IsEmpty());
  EXPECT_EQ("did not end in time", report.failure);
}

}  // namespace
}  // namespace FaultTest
