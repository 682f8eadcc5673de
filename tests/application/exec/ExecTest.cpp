// The whole program with a program of its user's.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class ExecTest : public testing::Test {
 protected:
  // The script has the file as $0.
  Arguments watchWith(const std::string& script, const Arguments& more = {}) const {
    Arguments arguments = {"watch",      "--exec", "sh",         "--exec-arg", "-c",
                           "--exec-arg", script,   "--exec-arg", out()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  std::string out() const { return folder.file("out"); }
  // A script that has written something runs.
  void waitForOutput() const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!std::filesystem::exists(out()) && std::chrono::steady_clock::now() < end)
      poll(nullptr, 0, 10);
  }

  TemporaryFolder folder;
};

TEST_F(ExecTest, TheProgramGetsEachEventAsTheWatchPrintsIt) {
  const Result json = run({"watch", "--json", "--registry", recording("enclosure-gone-and-back")});
  const Arguments registry = {"--registry", recording("enclosure-gone-and-back")};
  const Result result = run(watchWith("cat >> \"$0\"", registry));
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(json.out, contentOf(out()));
}

TEST_F(ExecTest, ChangesNothingOfTheJSON) {
  EXPECT_EQ(run({"watch", "--json", "--log", "--handles"}).out,
            run(watchWith("cat > /dev/null", {"--json", "--log", "--handles"})).out);
}

TEST_F(ExecTest, TheEssentialsAreInTheEnvironment) {
  run(
      watchWith("echo \"$RAIDMONITOR_EVENT $RAIDMONITOR_VOLUME_NAME $RAIDMONITOR_STATE "
                "$RAIDMONITOR_MEMBERS\" >> \"$0\"",
                {"--until", "8000"}));
  EXPECT_THAT(linesOf(contentOf(out())),
              Contains(StartsWith("raid-updated Projects degraded 1:online:38E7C6A2")));
}

TEST_F(ExecTest, AnArgumentPassesThroughNoShell) {
  const std::string argument = "$(touch " + folder.file("touched") + "); `id` * \"";
  run({"watch", "--until", "0", "--exec", "sh", "--exec-arg", "-c", "--exec-arg",
       "printf '%s\\n' \"$1\" >> \"$0\"", "--exec-arg", out(), "--exec-arg=" + argument});
  EXPECT_THAT(linesOf(contentOf(out())), Each(argument));
  EXPECT_FALSE(std::filesystem::exists(folder.file("touched")));
}

TEST_F(ExecTest, AProgramThatCantBeStartedIsReportedOnceAndTheWatchGoesOn) {
  const Result plain = run({"watch"});
  const Result result = run({"watch", "--exec", folder.file("absent")});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(plain.out, result.out);
  const auto lines = linesOf(result.err);
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(),
                          "raidmonitor: " + folder.file("absent") +
                              ": cannot be started: No such file or directory"));
  EXPECT_EQ(linesOf(plain.err).size() + 1, lines.size());
}

TEST_F(ExecTest, WhatTheProgramPrintsIsNotAmongTheEvents) {
  const Result result = run(watchWith("echo noise", {"--json"}));
  EXPECT_EQ(run({"watch", "--json"}).out, result.out);
  EXPECT_THAT(result.err, HasSubstr("noise\n"));
}

TEST_F(ExecTest, TheProgramInheritsNoDescriptorsButTheStandardOnes) {
  // What the test has inherited itself without being asked is not this program's fault.
  std::set<std::string> allowed = {"0", "1", "2"};
  bool foldersIsKnown = false;
  for (int descriptor = 3; descriptor < 1024; ++descriptor) {
    const int flags = fcntl(descriptor, F_GETFD);
    const bool inherited = flags != -1 && (flags & FD_CLOEXEC) == 0;
    // The first that is free is the one by which ls reads the folder.
    if (inherited || !foldersIsKnown) allowed.insert(std::to_string(descriptor));
    foldersIsKnown = foldersIsKnown || !inherited;
  }
  run(watchWith("exec ls /proc/self/fd > \"$0\"", {"--until", "0"}));
  const auto found = linesOf(contentOf(out()));
  EXPECT_THAT(found, Contains("0"));
  for (const std::string& descriptor : found)
    EXPECT_EQ(1U, allowed.count(descriptor)) << descriptor;
}

TEST_F(ExecTest, APipeThatNobodyReadsEndsTheWatchInOrder) {
  RunningProgram program(watchWith("cat >> \"$0\"", {"--log", "--until", "9223372036854775807"}));
  program.waitForLines(1);
  program.closeOutput();
  const Result result = program.finish();
  EXPECT_EQ(1, result.status);
  EXPECT_THAT(result.err, EndsWith("raidmonitor: standard output: Broken pipe\n"));
  EXPECT_THAT(linesOf(contentOf(out())), Each(StartsWith("{\"time\": ")));
}

TEST_F(ExecTest, ASecondInterruptEndsTheWaitForTheProgram) {
  RunningProgram program(watchWith("echo $$ >> \"$0\"; exec sleep 8", {"--json", "--pace"}));
  program.waitForLines(3);
  waitForOutput();
  program.send(SIGINT);
  // The first ends the watch, whenever it is noticed; any later one ends the wait.
  while (!program.waitForExit(50))
    program.send(SIGINT);
  const Result result = program.finish();
  EXPECT_EQ(0, result.status);
  EXPECT_THAT(result.err, HasSubstr("sh: was ended, as the watch is over\n"));
  EXPECT_THAT(result.err, HasSubstr("raidmonitor: sh: 2 events were not handed to it\n"));
}

TEST_F(ExecTest, TestEventsAreOneOfEachKind) {
  const Result result =
      run(watchWith("read line; echo \"$RAIDMONITOR_TEST $RAIDMONITOR_EVENT $line\" >> \"$0\"",
                    {"--test-event"}));
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(
      "device-appeared    taken\nraid-appeared      taken\nraid-updated       taken\n"
      "device-disappeared taken\nraid-disappeared   taken\ndropped            taken\n",
      result.out);
  const auto lines = linesOf(contentOf(out()));
  ASSERT_EQ(6U, lines.size());
  EXPECT_THAT(lines, Each(StartsWith("1 ")));
  EXPECT_THAT(lines[2],
              HasSubstr(R"( raid-updated {"time": 2000, "event": "raid-updated", "volu)"));
}

TEST_F(ExecTest, TestEventsThatAreNotTakenAreStatusOne) {
  const Result failing =
      run(watchWith("test $RAIDMONITOR_EVENT != raid-updated", {"--test-event"}));
  EXPECT_EQ(1, failing.status);
  EXPECT_THAT(linesOf(failing.out), Contains("raid-updated       exit status 1"));
  EXPECT_EQ(1, run({"watch", "--test-event", "--exec", folder.file("absent")}).status);
}

TEST_F(ExecTest, WithoutAProgramItsOptionsAreWrongUsage) {
  for (const Arguments& arguments : {Arguments{"watch", "--test-event"},
                                     {"watch", "--exec-arg", "x"},
                                     {"watch", "--exec", ""}}) {
    const Result result = run(arguments);
    EXPECT_EQ(2, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_THAT(result.err, AllOf(StartsWith("raidmonitor: --"), Not(HasSubstr("terminate"))));
  }
}

}  // namespace
}  // namespace ProgramTest
