#include "platform/registry/memory/archive/Recording.h"

#include <gmock/gmock.h>

#include "platform/registry/memory/archive/RecordingFolder.h"
#include "tests/archive/Support.h"

using MemoryRegistry::ArchiveError;
using MemoryRegistry::Recording;
using testing::ElementsAre;

namespace {

std::string reasonAgainstRecording(const std::string& path) {
  try {
    Recording::open(path);
  } catch (const ArchiveError& error) {
    return error.what();
  }
  return {};
}

using Texts = std::vector<std::pair<std::int64_t, std::string>>;

Recording recordingOf(const Texts& texts) {
  std::vector<std::pair<std::int64_t, Recording::MakeText>> archives;
  for (const auto& [time, text] : texts)
    archives.emplace_back(time, [text = text] { return text; });
  return Recording::fromMemory(std::move(archives));
}

std::string reasonAgainstTexts(const Texts& texts) {
  try {
    Recording recording = recordingOf(texts);
    for (std::size_t i = 0; i < recording.times().size(); ++i)
      recording.content(i);
  } catch (const ArchiveError& error) {
    return error.what();
  }
  return {};
}

std::string archiveOf(std::size_t entries) {
  std::string texts;
  for (std::size_t i = 1; i < entries; ++i)
    texts += entry(std::to_string(i + 1));
  return archive(children(texts));
}

}  // namespace

TEST(Recordings, AnArchiveIsARecordingOfTimeZero) {
  const TemporaryFolder folder;
  Recording recording = Recording::open(folder.write("any-name", archiveOf(3)));
  EXPECT_THAT(recording.times(), ElementsAre(0));
  EXPECT_EQ(3U, recording.content(0).entries.size());
}

TEST(Recordings, AFoldersArchivesAreInOrderOfTimeAndOtherFilesAreIgnored) {
  const TemporaryFolder folder;
  folder.write("10000.plist", archiveOf(4));
  folder.write("0.plist", archiveOf(1));
  folder.write("0900.plist", archiveOf(2));
  folder.write("1000.plist", binaryTwin(archiveOf(3)));
  for (const char* other : {"notes.txt", "-5.plist", "+5.plist", "5.plist.gz", ".plist", "5.PLIST",
                            "0x5.plist", "5 .plist", "5"}) {
    folder.write(other, "no archive");
  }
  Recording recording = Recording::open(folder.path());
  EXPECT_THAT(recording.times(), ElementsAre(0, 900, 1000, 10000));
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_EQ(i + 1, recording.content(i).entries.size());
}

TEST(Recordings, AContentCanBeReadAgain) {
  const TemporaryFolder folder;
  folder.write("0.plist", archiveOf(2));
  Recording recording = Recording::open(folder.path());
  EXPECT_TRUE(recording.content(0) == recording.content(0));
  EXPECT_EQ(2U, recording.content(0).entries.size());
}

TEST(Recordings, LeadingZerosNameTheSameTime) {
  const TemporaryFolder folder;
  folder.write("000.plist", archiveOf(1));
  folder.write("0000000000000000000000000005.plist", archiveOf(2));
  EXPECT_THAT(Recording::open(folder.path()).times(), ElementsAre(0, 5));
}

TEST(Recordings, FoldersThatAreNoneAreRefused) {
  const struct {
    std::vector<const char*> files;
    const char* reason;
  } rows[] = {
      {{}, ": has no archive: a recording's files are named <milliseconds>.plist"},
      {{"notes.txt"}, ": has no archive: a recording's files are named <milliseconds>.plist"},
      {{"1.plist", "2.plist"}, ": has no archive for time 0"},
      {{"0.plist", "7.plist", "007.plist"}, ": has two archives for time 7"},
      {{"0.plist", "00.plist"}, ": has two archives for time 0"},
      {{"0.plist", "9223372036854775808.plist"},
       "/9223372036854775808.plist: is named after a time that is too large"},
  };
  for (const auto& row : rows) {
    const TemporaryFolder folder;
    for (const char* file : row.files)
      folder.write(file, archiveOf(1));
    EXPECT_EQ(folder.path() + row.reason, reasonAgainstRecording(folder.path()));
  }
}

TEST(Recordings, TheLargestTimeIsTheLargestOf63Bits) {
  const TemporaryFolder folder;
  folder.write("0.plist", archiveOf(1));
  folder.write("9223372036854775807.plist", archiveOf(1));
  EXPECT_EQ(INT64_MAX, Recording::open(folder.path()).times().back());
}

TEST(Recordings, OpeningFindsEveryBadArchive) {
  for (const char* bad : {"0.plist", "5.plist", "9.plist"}) {
    const TemporaryFolder folder;
    for (const char* file : {"0.plist", "5.plist", "9.plist"})
      folder.write(file, archiveOf(1));
    const std::string file = folder.write(bad, "<plist><array/></plist>");
    EXPECT_EQ(file + ": has an array on top: an archive made with ioreg -r has no root",
              reasonAgainstRecording(folder.path()));
  }
}

TEST(Recordings, AFolderInPlaceOfAnArchiveIsRefused) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() + "/0.plist");
  EXPECT_EQ(folder.path() + "/0.plist: is a folder, not a file",
            reasonAgainstRecording(folder.path()));
}

TEST(Recordings, AnArchiveThatTurnsBadAfterOpeningIsRefusedWhenItIsAskedFor) {
  const TemporaryFolder folder;
  folder.write("0.plist", archiveOf(1));
  const std::string file = folder.write("5.plist", archiveOf(2));
  Recording recording = Recording::open(folder.path());
  folder.write("5.plist", archiveOf(2).substr(0, 200));
  EXPECT_THROW(recording.content(1), ArchiveError);
  EXPECT_EQ(1U, recording.content(0).entries.size());
}

TEST(Recordings, APathThatLeadsNowhereIsRefused) {
  EXPECT_EQ("/no/such: cannot be read: No such file or directory",
            reasonAgainstRecording("/no/such"));
}

// As when it has gone since it was found to be one.
TEST(Recordings, AFolderThatCannotBeListedIsNamedWithTheReason) {
  try {
    MemoryRegistry::listRecording("/no/such");
    FAIL();
  } catch (const ArchiveError& error) {
    EXPECT_STREQ("/no/such: cannot be read: No such file or directory", error.what());
  }
}

TEST(Recordings, TextsInMemoryAreReadByTime) {
  const std::string first = archiveOf(1);
  const std::string second = archiveOf(2);
  Recording recording = recordingOf({{700, second}, {0, first}});
  EXPECT_THAT(recording.times(), ElementsAre(0, 700));
  EXPECT_EQ(1U, recording.content(0).entries.size());
  EXPECT_EQ(2U, recording.content(1).entries.size());
}

TEST(Recordings, TextsInMemoryFollowTheSameRules) {
  const std::string good = archiveOf(1);
  EXPECT_EQ(
      "built-in recording: has no archive: a recording's files are named <milliseconds>.plist",
      reasonAgainstTexts({}));
  EXPECT_EQ("built-in recording: has no archive for time 0", reasonAgainstTexts({{1, good}}));
  EXPECT_EQ("built-in recording: has no archive for time 0",
            reasonAgainstTexts({{-1, good}, {0, good}}));
  EXPECT_EQ("built-in recording: has two archives for time 3",
            reasonAgainstTexts({{0, good}, {3, good}, {3, good}}));
  EXPECT_EQ("built-in archive for time 3: is not a property list, nor a text of ioreg",
            reasonAgainstTexts({{0, good}, {3, "bad"}}));
}
