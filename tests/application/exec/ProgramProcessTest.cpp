#include "application/exec/ProgramProcess.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using Program::Outcome;
using Program::ProgramLimits;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Kind = Program::Outcome::Kind;

constexpr milliseconds Long{60000};

class ProgramProcessTest : public testing::Test {
 protected:
  ProgramProcessTest() : _before(signal(SIGPIPE, SIG_IGN)) {}
  ~ProgramProcessTest() override { signal(SIGPIPE, _before); }

  Outcome run(const std::vector<std::string>& command, const ProgramLimits& limits = {}) {
    const std::function<bool()> givenUp = [this] { return gaveUp; };
    return Program::runProgram(command, {"event", input, environment}, limits, givenUp);
  }
  Outcome runShell(const std::string& script, const ProgramLimits& limits = {}) {
    return run({"sh", "-c", script, folder.file("out")}, limits);
  }
  std::string written() const { return contentOf(folder.file("out")); }

  TemporaryFolder folder;
  std::string input = "input\n";
  std::vector<std::string> environment = {"PATH=" + std::string(getenv("PATH")), "NAME=a value"};
  bool gaveUp = false;

 private:
  void (*_before)(int);
};

TEST_F(ProgramProcessTest, GetsItsInputAndItsEnvironmentAndNoOther) {
  setenv("OUTSIDE", "1", 1);
  EXPECT_TRUE(runShell("cat > \"$0\"; echo \"$NAME,$OUTSIDE\" >> \"$0\"").taken());
  unsetenv("OUTSIDE");
  EXPECT_EQ("input\na value,\n", written());
}

TEST_F(ProgramProcessTest, GetsItsArgumentsAsTheyAre) {
  const std::string argument = "$(touch x) * \"quoted\" 'and' \\ ; echo";
  EXPECT_TRUE(run({"sh", "-c", "printf %s \"$1\" > \"$0\"", folder.file("out"), argument}).taken());
  EXPECT_EQ(argument, written());
}

TEST_F(ProgramProcessTest, GetsMuchInputWhole) {
  input.assign(1000000, 'x');
  EXPECT_TRUE(runShell("cat > \"$0\"").taken());
  EXPECT_EQ(input, written());
}

TEST_F(ProgramProcessTest, NeedNotReadItsInput) {
  input.assign(1000000, 'x');
  EXPECT_TRUE(run({"true"}).taken());
  EXPECT_TRUE(runShell("exec < /dev/null; :").taken());
}

TEST_F(ProgramProcessTest, ItsStatusIsSeen) {
  EXPECT_EQ(Kind::Failed, runShell("exit 3").kind);
  EXPECT_EQ(3, runShell("exit 3").number);
  EXPECT_EQ(Kind::Killed, runShell("kill -ABRT $$").kind);
  EXPECT_EQ(SIGABRT, runShell("kill -ABRT $$").number);
}

TEST_F(ProgramProcessTest, WhyItCantBeStartedIsSeen) {
  const Outcome absent = run({folder.file("absent")});
  EXPECT_EQ(Kind::NotStarted, absent.kind);
  EXPECT_EQ(ENOENT, absent.number);
  EXPECT_EQ(EACCES, run({folder.path()}).number);
}

TEST_F(ProgramProcessTest, OneThatTakesTooLongIsAskedToEnd) {
  ProgramLimits limits;
  limits.time = milliseconds(100);
  limits.grace = Long;
  const auto start = steady_clock::now();
  EXPECT_EQ(
      Kind::TooSlow,
      runShell("trap 'echo asked > \"$0\"; exit 0' TERM; echo > \"$0\"; while :; do sleep 0.01; "
               "done",
               limits)
          .kind);
  EXPECT_LT(steady_clock::now() - start, Long);
  EXPECT_EQ("asked\n", written());
}

// The one who holds the pipe open the longest is a child of the program.
TEST_F(ProgramProcessTest, OneThatDoesNotEndWhenAskedIsKilledWithItsChildren) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
  ProgramLimits limits;
  limits.time = milliseconds(100);
  limits.grace = milliseconds(100);
  EXPECT_EQ(Kind::TooSlow, runShell("trap '' TERM; sleep 600 & sleep 600", limits).kind);
  close(ends[1]);
  pollfd end{ends[0], POLLIN, 0};
  EXPECT_EQ(1, poll(&end, 1, static_cast<int>(Long.count()))) << "somebody is still there";
  EXPECT_NE(0, end.revents & POLLHUP);
  close(ends[0]);
}

TEST_F(ProgramProcessTest, OneThatIsGivenUpIsEnded) {
  gaveUp = true;
  ProgramLimits limits;
  limits.time = Long;
  EXPECT_EQ(Kind::GivenUp, run({"sleep", "600"}, limits).kind);
}

TEST_F(ProgramProcessTest, IsTheHeadOfAProcessGroupWithSignalsAsUsual) {
  EXPECT_TRUE(runShell("test $(cut -d ' ' -f 5 /proc/$$/stat) = $$").taken());
  EXPECT_TRUE(runShell("grep -q 'SigBlk:\t0000000000000000' /proc/self/status").taken());
  EXPECT_TRUE(runShell("grep -q 'SigIgn:\t.*[02468ace]...$' /proc/self/status").taken())
      << "SIGPIPE";
}

TEST(Outcome, IsToldInWords) {
  const ProgramLimits limits;
  EXPECT_EQ("taken", reasonOf({}, limits));
  EXPECT_EQ("cannot be started: No such file or directory",
            reasonOf({Kind::NotStarted, ENOENT}, limits));
  EXPECT_EQ("exit status 3", reasonOf({Kind::Failed, 3}, limits));
  EXPECT_EQ("ended by signal 6", reasonOf({Kind::Killed, 6}, limits));
  EXPECT_EQ("took longer than 10000 ms and was ended", reasonOf({Kind::TooSlow, 0}, limits));
  EXPECT_EQ("was ended, as the watch is over", reasonOf({Kind::GivenUp, 0}, limits));
}

}  // namespace
}  // namespace ProgramTest
