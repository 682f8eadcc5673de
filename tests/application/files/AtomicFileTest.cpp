#include "application/files/AtomicFile.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

using namespace Program;
using namespace ProgramTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <class Action>
std::string errorOf(Action action) {
  try {
    action();
  } catch (const FileError& error) {
    return error.what();
  }
  return "no error";
}

std::string errorOfReplacing(const std::string& path) {
  return errorOf([&path] { AtomicFile::replace(path, "text"); });
}

mode_t modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(0, stat(path.c_str(), &status)) << path;
  return status.st_mode & 07777U;
}

// As long as it lives, files end at so many bytes, as on a disk that is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &_before);
    rlimit limit = _before;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
    _handler = signal(SIGXFSZ, SIG_IGN);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &_before);
    signal(SIGXFSZ, _handler);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit _before{};
  sighandler_t _handler = SIG_DFL;
};

class Umask {
 public:
  explicit Umask(mode_t mask) : _before(umask(mask)) {}
  ~Umask() { umask(_before); }
  Umask(const Umask&) = delete;
  Umask& operator=(const Umask&) = delete;

 private:
  mode_t _before;
};

// For the life of a process that is going to be killed.
[[noreturn]] void replaceForEver(const std::string& path) {
  const std::string texts[] = {std::string(100000, 'a'), std::string(200000, 'b')};
  for (std::size_t turn = 0;; ++turn)
    AtomicFile::replace(path, texts[turn % 2]);
}

bool isWhole(const std::string& text) {
  return text == std::string(100000, 'a') || text == std::string(200000, 'b');
}

TEST(AtomicFile, TakesItsPlaceAtTheCommitAndNotBefore) {
  const TemporaryFolder folder;
  const std::string path = folder.write("state.prom", "old");
  AtomicFile file(path);
  file.write("new ");
  file.write("text");
  EXPECT_EQ("old", contentOf(path));
  file.commit();
  EXPECT_EQ("new text", contentOf(path));
  EXPECT_THAT(folder.names(), ElementsAre("state.prom"));
}

TEST(AtomicFile, WithoutACommitNothingHasHappened) {
  const TemporaryFolder folder;
  { AtomicFile(folder.file("0.plist")).write("half"); }
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(AtomicFile, IsHiddenAndBearsNobodysSuffixUntilItIsInPlace) {
  const TemporaryFolder folder;
  const AtomicFile file(folder.file("state.prom"));
  ASSERT_EQ(1U, folder.names().size());
  EXPECT_THAT(folder.names()[0], testing::MatchesRegex("\\.raidmonitor\\.[0-9]+\\.0\\.tmp"));
}

TEST(AtomicFile, TwoOfOneProcessDoNotMeet) {
  const TemporaryFolder folder;
  AtomicFile a(folder.file("a"));
  AtomicFile b(folder.file("b"));
  a.write("1");
  b.write("2");
  a.commit();
  b.commit();
  EXPECT_EQ("1", contentOf(folder.file("a")));
  EXPECT_EQ("2", contentOf(folder.file("b")));
}

TEST(AtomicFile, IsReadableAsTheUmaskSaysOrByEverybody) {
  const TemporaryFolder folder;
  const Umask mask(077);
  AtomicFile::replace(folder.file("private"), "");
  AtomicFile::replace(folder.file("public"), "", AtomicFile::Readers::Everybody);
  EXPECT_EQ(0600U, modeOf(folder.file("private")));
  EXPECT_EQ(0644U, modeOf(folder.file("public")));
}

TEST(AtomicFile, ANameAloneIsOneInTheFolderOneIsIn) {
  const TemporaryFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  AtomicFile::replace("state.prom", "text");
  std::filesystem::current_path(before);
  EXPECT_EQ("text", contentOf(folder.file("state.prom")));
}

TEST(AtomicFile, ALinkStaysALink) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("elsewhere"));
  std::filesystem::create_symlink("elsewhere/real", folder.file("link"));
  AtomicFile::replace(folder.file("link"), "first");
  AtomicFile::replace(folder.file("link"), "second");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
  EXPECT_EQ("second", contentOf(folder.file("elsewhere/real")));
}

TEST(AtomicFile, LinksThatLeadInACircleAreAnError) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink("b", folder.file("a"));
  std::filesystem::create_symlink("a", folder.file("b"));
  EXPECT_EQ(folder.file("a") + ": cannot be written: Too many levels of symbolic links",
            errorOfReplacing(folder.file("a")));
}

TEST(AtomicFile, AFolderAndADeviceAreRefused) {
  const TemporaryFolder folder;
  EXPECT_EQ(folder.path() + ": is a folder, not a file", errorOfReplacing(folder.path()));
  EXPECT_EQ("/dev/null: is not an ordinary file", errorOfReplacing("/dev/null"));
  EXPECT_EQ(folder.path() + "/new/: is no name of a file", errorOfReplacing(folder.file("new/")));
  EXPECT_EQ(": is no name of a file", errorOfReplacing(""));
}

TEST(AtomicFile, AFolderThatIsNotThereIsAnError) {
  const TemporaryFolder folder;
  EXPECT_EQ(folder.file("no/state") + ": cannot be written: No such file or directory",
            errorOfReplacing(folder.file("no/state")));
}

TEST(AtomicFile, AFolderThatVanishesMeanwhileIsAnError) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("gone"));
  AtomicFile file(folder.file("gone/state"));
  std::filesystem::remove_all(folder.file("gone"));
  EXPECT_EQ(folder.file("gone/state") + ": cannot be written: No such file or directory",
            errorOf([&file] { file.commit(); }));
}

TEST(AtomicFile, AnErrorShowsANameThatWouldDisturbTheTerminalAsText) {
  EXPECT_EQ("no\uFFFDwhere/x: cannot be written: No such file or directory",
            errorOfReplacing("no\x1bwhere/x"));
}

TEST(AtomicFile, AFullDiskLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  const std::string path = folder.write("state.prom", "old");
  {
    const FullDisk full(1000);
    EXPECT_EQ(path + ": cannot be written: File too large",
              errorOf([&path] { AtomicFile::replace(path, std::string(2000, 'x')); }));
  }
  EXPECT_EQ("old", contentOf(path));
  EXPECT_THAT(folder.names(), ElementsAre("state.prom"));
}

TEST(AtomicFile, ReadersFindItWholeAlsoWhenTheWriterIsKilled) {
  const TemporaryFolder folder;
  const std::string path = folder.write("state.prom", std::string(100000, 'a'));
  for (int life = 0; life < 10; ++life) {
    const pid_t writer = fork();
    ASSERT_NE(-1, writer);
    if (writer == 0) replaceForEver(path);
    for (int look = 0; look < 20; ++look)
      EXPECT_TRUE(isWhole(contentOf(path)));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    EXPECT_TRUE(isWhole(contentOf(path)));
  }
}

TEST(AtomicFile, WhatAKilledProcessLeftIsNotInTheWay) {
  const TemporaryFolder folder;
  const std::string left =
      folder.write(".raidmonitor." + std::to_string(getpid()) + ".0.tmp", "left");
  AtomicFile::replace(folder.file("state.prom"), "text");
  EXPECT_EQ("text", contentOf(folder.file("state.prom")));
  EXPECT_EQ("left", contentOf(left));
}

}  // namespace
