#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(Watch, ShowsTheDemoRecordingWithoutARegistry) {
  const Result result = run({"watch", "--json"});
  EXPECT_EQ(0, result.status);
  for (const char* wanted : {"Two Bay", "Five Bay"}) {
    EXPECT_THAT(run({"list"}).out, HasSubstr(wanted));
  }
  for (const char* wanted : {"device-appeared", "degraded", "failed", "not-found", "standby"}) {
    EXPECT_THAT(result.out, HasSubstr(wanted));
  }
}

TEST(Watch, PrintsNeitherLogNorHandlesUnlessAsked) {
  const Result result = run({"watch", "--json", "--registry", recording("plug-in-in-stages")});
  EXPECT_THAT(linesOf(result.out), Each(AllOf(Not(HasSubstr(R"("event": "log")")),
                                              Not(HasSubstr(R"("event": "handles")")))));
  EXPECT_EQ(2U, linesOf(result.out).size()) << result.out;
}

TEST(Watch, WhatTheLibraryPrintsItselfComesOutOnStandardError) {
  const Result result = run({"watch", "--registry", recording("plug-in-in-stages")});
  EXPECT_THAT(result.err, StartsWith("the Complete Path is "));
  EXPECT_THAT(result.out, Not(HasSubstr("Complete Path")));
}

TEST(Watch, TheSameRecordingAnswersTheSameTwice) {
  const Arguments arguments = {"watch", "--json", "--log", "--handles"};
  EXPECT_EQ(run(arguments).out, run(arguments).out);
}

TEST(List, WithTheLogPrintsItOnStandardError) {
  const Arguments registry = {"list", "--json", "--registry", recording("plug-in-in-stages")};
  Arguments withLog = registry;
  withLog.push_back("--log");
  const Result quiet = run(registry);
  const Result logged = run(withLog);
  EXPECT_EQ(quiet.out, logged.out);
  EXPECT_THAT(quiet.err, Not(HasSubstr("[RAIDMonitor]")));
  EXPECT_THAT(logged.err, HasSubstr("message [RAIDMonitor] ThunderboltDevice::waitForDisks\n"));
}

}  // namespace
}  // namespace ProgramTest
