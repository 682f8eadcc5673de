#include <gmock/gmock.h>

#include "platform/registry/memory/archive/Recording.h"
#include "tests/archive/Support.h"

using MemoryRegistry::ArchiveError;
using MemoryRegistry::readArchive;
using MemoryRegistry::Recording;
using MemoryRegistry::RegistryContent;

namespace {

std::size_t prints(const RegistryContent& content, std::size_t entry) {
  std::size_t count = 1;
  for (const std::size_t child : content.entries[entry].children)
    count += prints(content, child);
  return count;
}

}  // namespace

TEST(RealArchives, HaveTheEntriesTheyWereMadeFrom) {
  const struct {
    const char* file;
    std::size_t entries;
    std::size_t prints;
    bool inheritance;
  } rows[] = {
      {"macmini6,2-osx10.8.2.converted-archive-i.plist", 502, 544, true},
      {"imac15,1-osx10.10.0.converted-archive.plist", 514, 553, false},
  };
  for (const auto& row : rows) {
    const RegistryContent content = readArchive(std::string(UNPACKED "/") + row.file);
    EXPECT_EQ(row.entries, content.entries.size()) << row.file;
    EXPECT_EQ(row.prints, prints(content, 0)) << row.file;
    EXPECT_EQ(row.inheritance, !content.entries.at(0).description.inheritance.empty()) << row.file;
  }
}

TEST(RealArchives, ReadTheSameFromTheirBinaryTwins) {
  for (const char* file : {UNPACKED "/macmini6,2-osx10.8.2.converted-archive-i.plist",
                           UNPACKED "/imac15,1-osx10.10.0.converted-archive.plist",
                           RECORDINGS "/five-bay-five-disks/0.plist"}) {
    EXPECT_TRUE(parse(readText(file)) == parse(binaryTwin(readText(file)))) << file;
  }
}

TEST(RealArchives, OneMadeWithTheOptionRIsRefusedWithALineThatSaysSo) {
  const std::string file =
      RECORDINGS "/applesilicon-macos26.6.2.ioreg-a-r-c-IOThunderboltSwitch-d1.plist";
  try {
    readArchive(file);
    ADD_FAILURE() << "it was read";
  } catch (const ArchiveError& error) {
    EXPECT_EQ(file + ": has an array on top: an archive made with ioreg -r has no root",
              error.what());
  }
}

TEST(RealArchives, RecordingsLoadWithTheirTimesAndEntries) {
  const struct {
    const char* folder;
    std::vector<std::int64_t> times;
    std::vector<std::size_t> entries;
  } rows[] = {
      {"two-bay-mirror-degrades",
       {0, 5000, 5400, 11000, 15000, 21000},
       {207, 209, 196, 211, 209, 208}},
      {"five-bay-five-disks", {0, 6000, 12000}, {270, 256, 273}},
      {"plug-in-in-stages",
       {0, 3000, 3400, 3900, 4350, 4900, 5300},
       {154, 168, 168, 170, 180, 205, 211}},
  };
  for (const auto& row : rows) {
    Recording recording = Recording::open(std::string(RECORDINGS "/") + row.folder);
    EXPECT_EQ(row.times, recording.times()) << row.folder;
    for (std::size_t i = 0; i < row.times.size(); ++i) {
      EXPECT_EQ(row.entries[i], recording.content(i).entries.size())
          << row.folder << " at " << row.times[i];
    }
  }
}
