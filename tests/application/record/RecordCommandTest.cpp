#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class RecordCommandTest : public testing::Test {
 protected:
  std::vector<std::string> files(const std::string& path) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  void expectError(const Result& result, const std::string& line) {
    EXPECT_EQ(1, result.status);
    EXPECT_EQ("raidmonitor: " + line + "\n", result.err);
    EXPECT_EQ("", result.out);
  }

  const TemporaryFolder work;
  const std::string target = work.file("recording");
};

TEST_F(RecordCommandTest, MakesTheFolderAndSaysNothing) {
  const Result result = run({"record", target, "--until", "2600"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ("", result.err);
  EXPECT_THAT(files(target), ElementsAre("0.plist", "2600.plist"));
}

TEST_F(RecordCommandTest, TakesAnEmptyFolder) {
  fs::create_directory(target);
  EXPECT_EQ(0, run({"record", target, "--until", "0"}).status);
  EXPECT_THAT(files(target), ElementsAre("0.plist"));
}

TEST_F(RecordCommandTest, LeavesAFolderAloneThatHoldsSomething) {
  fs::create_directory(target);
  std::ofstream(target + "/.hidden") << "x";
  expectError(run({"record", target}), target + ": is not empty");
  EXPECT_THAT(files(target), ElementsAre(".hidden"));
}

TEST_F(RecordCommandTest, AFileIsNoFolder) {
  std::ofstream(target) << "x";
  expectError(run({"record", target}), target + ": cannot be made: File exists");
}

TEST_F(RecordCommandTest, AFolderThatCannotBeMadeIsAnError) {
  expectError(run({"record", target + "/deeper"}),
              target + "/deeper: cannot be made: No such file or directory");
}

TEST_F(RecordCommandTest, ARegistryThatCannotBeReadLeavesNoFolder) {
  EXPECT_EQ(1, run({"record", target, "--registry", work.file("nothing")}).status);
  EXPECT_FALSE(fs::exists(target));
}

// The limit on a file's size stands for the end of the disk: the write fails half-way.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &_before);
    const rlimit limit{bytes, _before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &_before); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit _before{};
};

TEST_F(RecordCommandTest, AFullDiskIsOneErrorAndWhatWasWrittenStays) {
  ASSERT_EQ(0, run({"record", work.file("whole")}).status);
  const auto sizeOf = [&](const char* name) { return fs::file_size(work.file("whole/") + name); };
  ASSERT_LT(sizeOf("3400.plist"), sizeOf("3800.plist"));
  Result result;
  {
    const FullDisk full(sizeOf("3800.plist") - 1);
    result = run({"record", target});
  }
  expectError(result, target + "/3800.plist: cannot be written: File too large");
  EXPECT_THAT(files(target), ElementsAre("0.plist", "2600.plist", "3050.plist", "3400.plist"));
  const Result replay = run({"watch", "--json", "--registry", target, "--until", "3500"});
  EXPECT_EQ(run({"watch", "--json", "--until", "3500"}).out, replay.out);
}

TEST_F(RecordCommandTest, ADiskThatIsFullAtOnceLeavesNothing) {
  Result result;
  {
    const FullDisk full(1000);
    result = run({"record", target});
  }
  expectError(result, target + "/0.plist: cannot be written: File too large");
  EXPECT_FALSE(fs::exists(target));
}

TEST_F(RecordCommandTest, WrongUsageIsExplained) {
  EXPECT_EQ(2, run({"record"}).status);
  for (const char* every : {"0", "x", "-1", "1.5"}) {
    const Result result = run({"record", target, "--every", every});
    EXPECT_EQ(2, result.status) << every;
    EXPECT_THAT(result.err, HasSubstr("raidmonitor record --help")) << every;
  }
  EXPECT_FALSE(fs::exists(target));
}

TEST_F(RecordCommandTest, IsExplainedByItsHelp) {
  const Result result = run({"record", "--help"});
  for (const char* word : {"DIR", "--registry", "--every", "--until", "--anonymise"})
    EXPECT_THAT(result.out, HasSubstr(word));
  for (const std::string& line : linesOf(result.out))
    EXPECT_LE(line.size(), 80U) << line;
}

}  // namespace
}  // namespace ProgramTest
