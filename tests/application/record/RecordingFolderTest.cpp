#include "application/record/RecordingFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <stdexcept>

#include "application/files/AtomicFile.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

namespace fs = std::filesystem;
using Program::FileError;
using Program::RecordingFolder;

std::string errorOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const FileError& error) {
    return error.what();
  }
  return "none";
}

// What root may not do either.
class AsNobody {
 public:
  AsNobody() {
    if (geteuid() == 0 && seteuid(65534) != 0) throw std::runtime_error("seteuid");
  }
  ~AsNobody() {
    if (getuid() == 0 && seteuid(0) != 0) std::abort();
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
};

class RecordingFolderTest : public testing::Test {
 protected:
  const TemporaryFolder work;
  const std::string path = work.file("recording");
};

TEST_F(RecordingFolderTest, HoldsWhatWasWritten) {
  RecordingFolder folder(path);
  folder.write(0, "first");
  folder.write(2000, std::string(1 << 20U, 'x'));
  EXPECT_EQ("first", contentOf(path + "/0.plist"));
  EXPECT_EQ(1U << 20U, fs::file_size(path + "/2000.plist"));
  EXPECT_EQ(2, std::distance(fs::directory_iterator(path), {}));
}

TEST_F(RecordingFolderTest, IsGoneWhenNothingWasWritten) {
  { const RecordingFolder folder(path); }
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(RecordingFolderTest, OfSomebodyElseStaysThoughNothingWasWritten) {
  fs::create_directory(path);
  { const RecordingFolder folder(path); }
  EXPECT_TRUE(fs::exists(path));
}

TEST_F(RecordingFolderTest, ThatVanishesIsAnError) {
  RecordingFolder folder(path);
  folder.write(0, "first");
  fs::remove_all(path);
  EXPECT_EQ(path + "/2000.plist: cannot be written: No such file or directory",
            errorOf([&] { folder.write(2000, "second"); }));
}

TEST_F(RecordingFolderTest, ThatMayNotBeWrittenIsAnError) {
  fs::create_directory(path);
  ::chmod(work.path().c_str(), 0755);
  ::chmod(path.c_str(), 0555);
  const AsNobody nobody;
  RecordingFolder folder(path);
  EXPECT_EQ(path + "/0.plist: cannot be written: Permission denied",
            errorOf([&] { folder.write(0, "first"); }));
  EXPECT_EQ(path + "/deeper: cannot be made: Permission denied",
            errorOf([&] { RecordingFolder(path + "/deeper"); }));
}

TEST_F(RecordingFolderTest, AFileThatCannotBePutInPlaceLeavesNothing) {
  RecordingFolder folder(path);
  fs::create_directory(path + "/2000.plist");
  EXPECT_EQ(path + "/2000.plist: is a folder, not a file",
            errorOf([&] { folder.write(2000, "second"); }));
  EXPECT_EQ(1, std::distance(fs::directory_iterator(path), {}));
}

}  // namespace
}  // namespace ProgramTest
