// Files and folders that are not what an archive or a recording should be, on purpose.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/registry/memory/archive/ArchiveError.h"
#include "platform/registry/memory/archive/Recording.h"
#include "tests/archive/Support.h"

using MemoryRegistry::ArchiveError;
using MemoryRegistry::Recording;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

namespace {

std::string reasonAgainstRecording(const fs::path& path) {
  try {
    Recording::open(path.string());
  } catch (const ArchiveError& error) {
    return error.what();
  }
  return {};
}

TEST(PathTricks, ALinkIsReadAsWhatItLeadsTo) {
  const TemporaryFolder elsewhere;
  const TemporaryFolder folder;
  const std::string file = elsewhere.write("any-name", archive());
  fs::create_symlink(file, folder.path() + "/0.plist");
  EXPECT_EQ("", reasonAgainstRecording(folder.path()));
  EXPECT_EQ("", reasonAgainstRecording(folder.path() + "/0.plist"));
}

TEST(PathTricks, LinksThatLeadNowhereOrToThemselvesAreRefused) {
  const TemporaryFolder folder;
  fs::create_symlink(folder.path() + "/0.plist", folder.path() + "/0.plist");
  EXPECT_THAT(reasonAgainstRecording(folder.path()),
              EndsWith("/0.plist: cannot be read: Too many levels of symbolic links"));
  fs::remove(folder.path() + "/0.plist");
  fs::create_symlink(folder.path() + "/none", folder.path() + "/0.plist");
  EXPECT_THAT(reasonAgainstRecording(folder.path()),
              EndsWith("/0.plist: cannot be read: No such file or directory"));
}

TEST(PathTricks, NothingOfAFileIsQuotedInTheErrorAboutIt) {
  const TemporaryFolder folder;
  const char* secrets[] = {
      "secret:x:0:0:secret:/secret:/bin/secret\n",
      "<secret>secret</secret>",
      "<plist><dict><key>secret</key><secret/></dict></plist>",
      "<plist><dict><key>secret</key><string>&secret;</string></dict></plist>",
      "<plist><dict><key>secret</key><integer>secret</integer></dict></plist>",
      "bplist00secret",
  };
  for (const char* secret : secrets) {
    fs::remove(folder.path() + "/0.plist");
    fs::create_symlink(folder.write("target", secret), folder.path() + "/0.plist");
    const std::string reason = reasonAgainstRecording(folder.path());
    EXPECT_THAT(reason, HasSubstr("/0.plist: is not a "));
    EXPECT_THAT(reason, Not(HasSubstr("secret")));
  }
  const std::string odd = children("<dict><key>secret</key><string>secret</string></dict>");
  folder.write("target", archive(odd));
  EXPECT_THAT(reasonAgainstRecording(folder.path()), HasSubstr("has no IORegistryEntryID"));
  EXPECT_THAT(reasonAgainstRecording(folder.path()), Not(HasSubstr("secret")));
}

TEST(PathTricks, DevicesAreRefusedUnread) {
  for (const char* device : {"/dev/zero", "/dev/null", "/dev/random"})
    EXPECT_EQ(std::string(device) + ": is not an ordinary file", reasonAgainstRecording(device));
  const TemporaryFolder folder;
  fs::create_symlink("/dev/zero", folder.path() + "/0.plist");
  EXPECT_EQ(folder.path() + "/0.plist: is not an ordinary file",
            reasonAgainstRecording(folder.path()));
}

TEST(PathTricks, APipeInARecordingIsNotWaitedFor) {
  const TemporaryFolder folder;
  folder.write("0.plist", archive());
  ASSERT_EQ(0, ::mkfifo((folder.path() + "/5.plist").c_str(), 0600));
  EXPECT_EQ(folder.path() + "/5.plist: is not an ordinary file",
            reasonAgainstRecording(folder.path()));
}

TEST(PathTricks, FoldersInARecordingAreNotEnteredSoThatLoopsDoNoHarm) {
  const TemporaryFolder folder;
  folder.write("0.plist", archive());
  fs::create_directory(folder.path() + "/5");
  fs::create_symlink(".", folder.path() + "/5/loop");
  fs::create_symlink("..", folder.path() + "/up");
  fs::create_symlink(folder.path(), folder.path() + "/7");
  EXPECT_THAT(Recording::open(folder.path()).times(), ElementsAre(0));
}

TEST(PathTricks, NamesThatOnlyLookLikeTimesAreIgnored) {
  const TemporaryFolder folder;
  folder.write("0.plist", archive());
  for (const char* name :
       {"-1.plist", "+1.plist", " 1.plist", "1 .plist", "0x1.plist", "1e3.plist", "1.5.plist",
        "1.PLIST", "1.plist~", "1.plist.plist", ".plist", "plist", "1", "1plist", "..plist",
        "1\n.plist", "\xEF\xBC\x91.plist", "\x1b[2J.plist", "\xff.plist"}) {
    folder.write(name, "not an archive");
  }
  EXPECT_THAT(Recording::open(folder.path()).times(), ElementsAre(0));
}

}  // namespace
