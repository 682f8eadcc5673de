#include "application/progress/Progress.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using Program::Progress;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

const std::string Erased = "\r\x1b[K";

// Standard error is a terminal as long as this lives.
class ErrorTerminal {
 public:
  explicit ErrorTerminal(unsigned short columns = 80) : _before(dup(STDERR_FILENO)) {
    _master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    char name[128];
    if (_master == -1 || grantpt(_master) != 0 || unlockpt(_master) != 0 ||
        ptsname_r(_master, name, sizeof name) != 0) {
      throw std::runtime_error("no terminal");
    }
    const int slave = open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    winsize size{};
    size.ws_col = columns;
    ioctl(slave, TIOCSWINSZ, &size);
    dup2(slave, STDERR_FILENO);
    close(slave);
  }
  ~ErrorTerminal() {
    dup2(_before, STDERR_FILENO);
    close(_before);
    close(_master);
  }
  ErrorTerminal(const ErrorTerminal&) = delete;
  ErrorTerminal& operator=(const ErrorTerminal&) = delete;

  // Reads on until that has been printed since the last call; what was.
  std::string readUntil(const std::string& text) {
    std::string all;
    while (all.find(text) == std::string::npos) {
      constexpr int deadline = 30000;
      pollfd ready{_master, POLLIN, 0};
      if (poll(&ready, 1, deadline) != 1) throw std::runtime_error("not printed: " + text);
      all += readSome();
    }
    return all;
  }

  std::string readWhatIsThere() {
    std::string all;
    for (pollfd ready{_master, POLLIN, 0}; poll(&ready, 1, 0) == 1;)
      all += readSome();
    return all;
  }

 private:
  std::string readSome() const {
    char buffer[4096];
    const ssize_t count = read(_master, buffer, sizeof buffer);
    return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
  }

  int _before;
  int _master = -1;
};

std::ptrdiff_t threads() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

class ProgressTest : public testing::Test {
 protected:
  ProgressTest() { setenv("TERM", "xterm", 1); }
};

TEST_F(ProgressTest, OfShortWorkIsNotShown) {
  ErrorTerminal terminal;
  { Progress progress("Working", 100); }
  EXPECT_EQ("", terminal.readWhatIsThere());
}

TEST_F(ProgressTest, OfLongWorkIsShownUntilItIsDone) {
  ErrorTerminal terminal;
  {
    Progress progress("Working", 100);
    progress.reach(50);
    EXPECT_THAT(terminal.readUntil("%"), HasSubstr("Working [###############...............] 50%"));
    progress.reach(100);
    terminal.readUntil("100%");
  }
  EXPECT_THAT(terminal.readUntil(Erased), EndsWith(Erased));
}

TEST_F(ProgressTest, OfWorkWithoutAKnownEndIsItsName) {
  ErrorTerminal terminal;
  Progress progress("Working");
  EXPECT_THAT(terminal.readUntil("..."), HasSubstr("Working ..."));
  progress.reach(1, 4);  // now it is known
  terminal.readUntil("25%");
}

TEST_F(ProgressTest, BeyondTheEndIsTheEnd) {
  ErrorTerminal terminal;
  Progress progress("Working", 100);
  progress.reach(1000);
  EXPECT_THAT(terminal.readUntil("%"), HasSubstr("] 100%"));
}

TEST_F(ProgressTest, FitsANarrowTerminal) {
  ErrorTerminal terminal(20);
  const Progress progress("Working", 100);
  EXPECT_EQ("\rWorking [..........\x1b[K\r", terminal.readUntil("K\r").substr(0, 24));
}

TEST_F(ProgressTest, MakesRoomForOthersWhoPrint) {
  ErrorTerminal terminal;
  Progress progress("Working", 100);
  terminal.readUntil("%");
  Progress::hide();
  terminal.readUntil(Erased);
  terminal.readUntil("%");  // and is back
}

TEST_F(ProgressTest, WithoutATerminalThereIsNone) {
  const std::ptrdiff_t before = threads();
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  const int kept = dup(STDERR_FILENO);
  dup2(ends[1], STDERR_FILENO);
  {
    Progress progress("Working", 100);
    progress.reach(50);
    Progress::hide();
    EXPECT_EQ(before, threads());
  }
  dup2(kept, STDERR_FILENO);
  for (const int descriptor : {kept, ends[0], ends[1]})
    close(descriptor);
}

TEST_F(ProgressTest, ATerminalThatCannotEraseHasNone) {
  const std::ptrdiff_t before = threads();
  const ErrorTerminal terminal;
  for (const char* name : {"dumb", ""}) {
    setenv("TERM", name, 1);
    const Progress progress("Working", 100);
    EXPECT_EQ(before, threads()) << name;
  }
  unsetenv("TERM");
  const Progress progress("Working", 100);
  EXPECT_EQ(before, threads());
}

TEST_F(ProgressTest, TheOuterOneOfTwoIsDrawn) {
  ErrorTerminal terminal;
  Progress outer("Outer", 100);
  const Progress inner("Inner", 100);
  EXPECT_THAT(terminal.readUntil("%"), HasSubstr("Outer"));
}

// In the real program: a replay without an end, as far as anybody has time for.
Launch onErrorTerminal() {
  Launch launch;
  launch.errorsOnTerminal = true;
  return launch;
}

const Arguments EndlessWatch = {"watch", "--json", "--until", "9000000000000"};

TEST(ProgressOfAReplay, IsShownOnStandardErrorAndGoneInTheEnd) {
  RunningProgram program(EndlessWatch, onErrorTerminal());
  program.waitForError("Replaying [");
  program.send(SIGTERM);
  const Result result = program.finish();
  EXPECT_EQ(0, result.status);
  EXPECT_THAT(result.err, EndsWith(Erased));
  EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
  for (const std::string& line : linesOf(result.out))
    EXPECT_TRUE(nlohmann::json::accept(line)) << line;
}

TEST(ProgressOfAReplay, IsShownByTheCommandsThatAnswerOnce) {
  for (const char* command : {"list", "slots", "check", "metrics"}) {
    RunningProgram program({command, "--until", "9000000000000"}, onErrorTerminal());
    program.waitForError("Replaying [");
    program.send(SIGTERM);
    EXPECT_EQ(-SIGTERM, program.finish().status) << command;
  }
}

TEST(ProgressOfAReplay, IsNotShownWhereTimePasses) {
  Arguments arguments = EndlessWatch;
  arguments.emplace_back("--pace");
  RunningProgram program(arguments, onErrorTerminal());
  program.waitForLines(4);  // beyond the second second
  program.send(SIGTERM);
  EXPECT_THAT(program.finish().err, Not(HasSubstr("Replaying")));
}

// A recording in which two real machines' registries take turns.
std::string recordingOfArchives(const TemporaryFolder& folder, int count) {
  const std::string texts = std::string(RAIDMONITOR_SOURCES) + "/tests/archive/texts/";
  const std::string machines[] = {texts + "imac15,1-osx10.10.0.ioreg.txt.gz",
                                  texts + "macbookpro15,2-macos10.15.3.ioreg.txt.gz"};
  const std::string path = folder.file("recording-of-" + std::to_string(count));
  std::filesystem::create_directory(path);
  for (int time = 0; time < count; ++time) {
    std::filesystem::create_symlink(machines[time % 2],
                                    path + "/" + std::to_string(time) + ".plist");
  }
  return path;
}

TEST(ProgressOfReading, IsShownOnStandardError) {
  const TemporaryFolder folder;
  // More than anybody has time for.
  RunningProgram program({"list", "--registry", recordingOfArchives(folder, 3000)},
                         onErrorTerminal());
  program.waitForError("Reading [");
  program.send(SIGTERM);
  const Result result = program.finish();
  EXPECT_EQ(-SIGTERM, result.status);
  EXPECT_EQ("", result.out);
}

// How many archives make it long depends on the machine: twice as many until they do.
TEST(ProgressOfARecording, IsShownOnStandardErrorAndGoneInTheEnd) {
  const TemporaryFolder folder;
  for (int archives = 8;; archives *= 2) {
    ASSERT_LT(archives, 10000);
    const std::string written = folder.file("written-of-" + std::to_string(archives));
    RunningProgram program(
        {"record", written, "--anonymise", "--registry", recordingOfArchives(folder, archives)},
        onErrorTerminal());
    const bool isLong = program.printsError("Recording [");
    if (isLong) program.send(SIGTERM);
    const Result result = program.finish();
    EXPECT_EQ(0, result.status) << result.err;
    EXPECT_EQ("", result.out);
    EXPECT_TRUE(std::filesystem::exists(written + "/0.plist"));
    if (!isLong) continue;
    EXPECT_THAT(result.err, EndsWith(Erased));
    return;
  }
}

}  // namespace
}  // namespace ProgramTest
