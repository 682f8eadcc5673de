// Nothing is written anywhere: the program works where it may not write.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

// Root may write everywhere, unless it gives that up.
std::string asAnybody() {
  return geteuid() == 0 ? "setpriv --bounding-set=-dac_override --inh-caps=-dac_override " : "";
}

int statusOf(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class ReadOnlyFolderTest : public testing::Test {
 protected:
  ReadOnlyFolderTest() {
    std::filesystem::create_directory(readOnly);
    std::filesystem::copy(recording("two-bay-mirror-degrades"), readOnly + "/recording");
    chmod((readOnly + "/recording").c_str(), 0555);
    chmod(readOnly.c_str(), 0555);
  }
  ~ReadOnlyFolderTest() override {
    chmod(readOnly.c_str(), 0755);
    chmod((readOnly + "/recording").c_str(), 0755);
  }

  std::string in(const std::string& command) const {
    return "cd '" + readOnly + "' && " + asAnybody() + command + " > ../out 2> /dev/null";
  }

  TemporaryFolder folder;
  std::string readOnly = folder.file("read-only");
};

TEST_F(ReadOnlyFolderTest, IsOneInWhichNothingCanBeWritten) {
  EXPECT_NE(0, statusOf(in("touch file")));
}

TEST_F(ReadOnlyFolderTest, ChecksMetricsAndReportsComeFromThere) {
  const std::string program = RAIDMONITOR_PROGRAM;
  EXPECT_EQ(2, statusOf(in(program + " check --registry recording --until 8000")));
  EXPECT_EQ(0, statusOf(in(program + " metrics --registry recording")));
  EXPECT_EQ(0, statusOf(in(program + " report --registry recording --output ../page.html")));
  EXPECT_EQ(0, statusOf(in(program + " record ../copy --registry recording")));
}

TEST_F(ReadOnlyFolderTest, NothingIsWrittenIntoIt) {
  const std::string program = RAIDMONITOR_PROGRAM;
  EXPECT_EQ(1, statusOf(in(program + " record copy --registry recording")));
  EXPECT_EQ(1, statusOf(in(program + " report --registry recording --output page.html")));
  EXPECT_EQ(1, statusOf(in(program + " metrics --registry recording --output metrics.prom")));
}

TEST_F(ReadOnlyFolderTest, WhatIsShownIsShownThere) {
  for (const char* command : {"watch", "list", "slots"}) {
    EXPECT_EQ(0, statusOf(in(RAIDMONITOR_PROGRAM + (" " + std::string(command)) +
                             " --json --registry recording")))
        << command;
    EXPECT_EQ(run({command, "--json", "--registry", recording("two-bay-mirror-degrades")}).out,
              contentOf(folder.file("out")));
  }
}

TEST_F(ReadOnlyFolderTest, AWatchRunsItsProgramThere) {
  EXPECT_EQ(0, statusOf(in(RAIDMONITOR_PROGRAM " watch --exec cat --test-event")));
}

}  // namespace
}  // namespace ProgramTest
