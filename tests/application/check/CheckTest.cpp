#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Result check(Arguments arguments) {
  arguments.insert(arguments.begin(), "check");
  return run(arguments);
}

std::string firstLine(const Result& result) {
  const auto lines = linesOf(result.out);
  return lines.empty() ? "" : lines.front();
}

const std::string projects = "2f7a93d8-51ce-4e06-8d7b-94b6e0c3a125";

TEST(Check, AnswersWithOneStatusForEachMomentOfAnIncident) {
  const struct {
    const char* until;
    int status;
    const char* line;
  } moments[] = {
      {"2000", 0, "OK - 2 volumes online | "},
      {"3000", 1, "WARNING - Example Storage Two Bay 0x00030f1b7461e0a5 is coming up | "},
      {"6000", 0, "OK - 3 volumes online | "},
      {"8000", 2, "CRITICAL - Projects: mirror degraded, disk failed in bay 2 ("},
      {"10000", 2, "CRITICAL - Projects: mirror degraded, disk missing from bay 2 ("},
      {"14000", 1, "WARNING - Projects: mirror degraded, disk on standby in bay 2 ("},
      {"22000", 0, "OK - 3 volumes online | "},
      {"24000", 2, "CRITICAL - Scratch: stripe offline, disk missing, bay not known ("},
      {"28000", 0, "OK - 3 volumes online | "}};
  for (const auto& moment : moments) {
    const Result result = check({"--until", moment.until});
    EXPECT_EQ(moment.status, result.status) << moment.until;
    EXPECT_THAT(firstLine(result), StartsWith(moment.line)) << moment.until;
  }
}

TEST(Check, HasALineForEachVolumeTheWorstFirst) {
  expectGolden("check-degraded.txt", check({"--until", "8000"}).out);
}

TEST(Check, SaysThatItLookedAtTheDemonstration) {
  EXPECT_EQ("Looked at the built-in demonstration, not at this computer",
            linesOf(check({}).out).back());
  const std::string archive = recording("two-bay-mirror-degrades");
  EXPECT_EQ("Looked at " + archive, linesOf(check({"--registry", archive}).out).back());
}

TEST(Check, AnExpectedVolumeThatIsMissingIsCritical) {
  EXPECT_EQ(0, check({"--expect", projects}).status);
  EXPECT_EQ(0, check({"--expect", projects, "--expect", "6B2D61C4-8F0E-4B7A-9C53-0A41D7E2F610",
                      "--expect-volumes", "3"})
                   .status);
  const Result missing = check({"--until", "2000", "--expect", projects});
  EXPECT_EQ(2, missing.status);
  EXPECT_THAT(firstLine(missing), StartsWith("CRITICAL - volume " + projects + " is missing | "));
}

TEST(Check, TooFewVolumesAreCriticalAndMoreAreFine) {
  EXPECT_EQ(0, check({"--expect-volumes", "2"}).status);
  const Result result = check({"--expect-volumes", "010"});
  EXPECT_EQ(2, result.status);
  EXPECT_THAT(firstLine(result), StartsWith("CRITICAL - 3 volumes where 10 are expected | "));
  EXPECT_THAT(firstLine(result), HasSubstr(" volumes=3;;10:;0 "));
}

TEST(Check, NothingToLookAtIsUnknownUnlessSomebodySaidSo) {
  const std::string nothing = recording("plug-in-in-stages/0.plist");
  const Result unsaid = check({"--registry", nothing});
  EXPECT_EQ(3, unsaid.status);
  EXPECT_THAT(firstLine(unsaid), StartsWith("UNKNOWN - no RAID volume is connected | "));
  EXPECT_THAT(unsaid.out, HasSubstr("say --expect-volumes 0"));
  const Result said = check({"--registry", nothing, "--expect-volumes", "0"});
  EXPECT_EQ(0, said.status);
  EXPECT_THAT(firstLine(said),
              StartsWith("OK - no RAID volume is connected, and none is expected | "));
}

TEST(Check, AnEnclosureWithoutVolumesIsNothingToLookAt) {
  const Result result = check({"--registry", recording("spanning-set-leaves-through-the-other")});
  EXPECT_EQ(3, result.status);
  EXPECT_THAT(firstLine(result), StartsWith("UNKNOWN - no RAID volume is connected | "));
}

TEST(Check, AnEnclosureThatLostItsBridgeIsUnknown) {
  const Result result =
      check({"--registry", recording("bridge-lost-while-the-switch-stays"), "--until", "4000"});
  EXPECT_EQ(3, result.status);
  EXPECT_THAT(result.out, HasSubstr("UNKNOWN: volume Projects has gone just now\n"));
  EXPECT_THAT(result.out, HasSubstr("Cannot find back the PCI Bridge object\n"));
}

TEST(Check, ARegistryThatCannotBeReadIsUnknownOnStandardOutput) {
  const TemporaryFolder folder;
  for (const std::string& registry :
       {folder.file("missing"), folder.write("text", "no archive"), folder.path()}) {
    const Result result = check({"--registry", registry});
    EXPECT_EQ(3, result.status) << registry;
    EXPECT_THAT(result.out, StartsWith("UNKNOWN - " + registry)) << registry;
    EXPECT_EQ(1U, linesOf(result.out).size()) << result.out;
  }
}

TEST(Check, WrongUsageIsUnknownAndNotWhatReadsAsCritical) {
  for (const Arguments& wrong : std::vector<Arguments>{{"--nonsense"},
                                                       {"extra"},
                                                       {"--until", "soon"},
                                                       {"--expect"},
                                                       {"--expect", ""},
                                                       {"--expect", "nonsense"},
                                                       {"--expect", "Projects"},
                                                       {"--expect", projects + "0"},
                                                       {"--expect", "{" + projects.substr(1)},
                                                       {"--expect", projects.substr(1)},
                                                       {"--expect-volumes", "-1"},
                                                       {"--expect-volumes", "two"},
                                                       {"--expect-volumes", "1", "2"},
                                                       {"--json"}}) {
    const Result result = check(wrong);
    EXPECT_EQ(3, result.status) << wrong.front();
    EXPECT_THAT(result.out, StartsWith("UNKNOWN - ")) << wrong.front();
    EXPECT_THAT(result.out, HasSubstr("\nTry 'raidmonitor check --help'.\n"));
  }
}

TEST(Check, WhatIsNoUUIDIsNotTakenForAVolumeThatIsMissing) {
  EXPECT_EQ(
      "UNKNOWN - --expect: 'Projects' is no UUID: 'raidmonitor list --json' tells them\n"
      "Try 'raidmonitor check --help'.\n",
      check({"--expect", "Projects"}).out);
}

// Some runners take the first line of both outputs for the answer.
TEST(Check, NothingIsOnStandardErrorUnlessTheLogIsWanted) {
  for (const char* until : {"2000", "3000", "8000"})
    EXPECT_EQ("", check({"--until", until}).err);
  EXPECT_EQ("", check({"--registry", "/nowhere"}).err);
  EXPECT_EQ("", check({"--nonsense"}).err);
  EXPECT_THAT(check({"--log"}).err, HasSubstr("[RAIDMonitor] ThunderboltDevice::waitForDisks\n"));
}

TEST(Check, HelpIsNoAnswer) {
  const Result result = check({"--help"});
  EXPECT_EQ(0, result.status);
  EXPECT_THAT(result.out, HasSubstr("Exit status: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN"));
}

TEST(Check, AnAnswerThatNobodyCouldReadIsNotOKAndNoBetterThanItWas) {
  Launch full;
  full.output = Launch::Output::File;
  full.file = "/dev/full";
  Launch closed;
  closed.output = Launch::Output::Closed;
  for (const Launch& launch : {full, closed}) {
    const Result fine = run({"check", "--until", "2000"}, launch);
    EXPECT_EQ(3, fine.status);
    EXPECT_THAT(fine.err, HasSubstr("raidmonitor: standard output: "));
    EXPECT_EQ(1, run({"check", "--until", "14000"}, launch).status);
    EXPECT_EQ(2, run({"check", "--until", "8000"}, launch).status);
    EXPECT_EQ(3, run({"check", "--nonsense"}, launch).status);
  }
}

}  // namespace
}  // namespace ProgramTest
