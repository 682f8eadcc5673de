#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::StartsWith;

class SourceError : public testing::Test {
 protected:
  SourceError() { std::filesystem::create_directory(folder); }
  ~SourceError() override { std::filesystem::remove_all(folder); }

  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(folder / name) << text;
    return folder / name;
  }

  // One line that names the file and the reason, and nothing else.
  static void expectRefused(const std::string& registry, const std::string& named) {
    for (const char* command : {"watch", "list", "slots"}) {
      for (const char* form : {"--json", "--log"}) {
        const Result result = run({command, form, "--registry", registry});
        EXPECT_EQ(1, result.status) << command;
        EXPECT_EQ("", result.out) << command;
        EXPECT_THAT(result.err, StartsWith("raidmonitor: " + named + ": ")) << command;
        EXPECT_GT(result.err.size(), ("raidmonitor: " + named + ": \n").size()) << command;
        EXPECT_EQ(1U, linesOf(result.err).size()) << result.err;
      }
    }
  }

  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) /
      ("raidmonitor-" + std::to_string(getpid()) + "-" +
       testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(SourceError, AFileThatIsMissing) {
  expectRefused(folder / "missing.plist", folder / "missing.plist");
}

TEST_F(SourceError, AFileThatIsNoPropertyList) {
  const std::string file = write("notes.txt", "not a property list");
  expectRefused(file, file);
}

TEST_F(SourceError, AnEmptyPathIsNamedByItsOption) {
  for (const char* command : {"watch", "list", "slots", "metrics"}) {
    const Result result = run({command, "--registry", ""});
    EXPECT_EQ(1, result.status) << command;
    EXPECT_EQ("", result.out) << command;
    EXPECT_EQ("raidmonitor: --registry: the empty path names no file or folder\n", result.err);
  }
}

TEST_F(SourceError, AFolderWithoutAnArchiveForTimeZero) {
  std::filesystem::copy(recording("two-bay-mirror-degrades/0.plist"), folder / "5.plist");
  expectRefused(folder, folder);
}

TEST_F(SourceError, ARecordingWhoseLastArchiveIsBadPrintsNothingOfTheOthers) {
  std::filesystem::copy(recording("two-bay-mirror-degrades/0.plist"), folder / "0.plist");
  const std::string file = write("9000.plist", "<plist><array/></plist>");
  expectRefused(folder, file);
}

TEST_F(SourceError, AFileNameWithControlsIsOneHarmlessLine) {
  const Result result = run({"watch", "--registry", "/no\nsuch\x1b[31mfile"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(1U, linesOf(result.err).size());
  EXPECT_EQ(std::string::npos, result.err.find('\x1b'));
}

}  // namespace
}  // namespace ProgramTest
