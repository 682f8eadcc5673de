#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/archive/Packing.h"
#include "tests/archive/Support.h"

using MemoryRegistry::ArchiveError;
using MemoryRegistry::readArchive;

namespace {

std::string reasonAgainstFile(const std::string& file) {
  try {
    readArchive(file);
  } catch (const ArchiveError& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST(ArchiveFiles, AFileReadsAsItsTextDoes) {
  const TemporaryFolder folder;
  const std::string xml = archive(children(entry("2")));
  EXPECT_TRUE(parse(xml) == readArchive(folder.write("x.plist", xml)));
  EXPECT_TRUE(parse(xml) == readArchive(folder.write("b.plist", binaryTwin(xml))));
}

TEST(ArchiveFiles, AByteOrderMarkIsSkipped) {
  EXPECT_EQ(1U, parse("\xEF\xBB\xBF" + archive()).entries.size());
}

TEST(ArchiveFiles, WhatCannotBeReadIsNamedWithTheReason) {
  const TemporaryFolder folder;
  const std::string missing = folder.path() + "/none.plist";
  EXPECT_EQ(missing + ": cannot be read: No such file or directory", reasonAgainstFile(missing));
  EXPECT_EQ(folder.path() + ": is a folder, not a file", reasonAgainstFile(folder.path()));
  const std::string empty = folder.write("empty.plist", "");
  EXPECT_EQ(empty + ": is empty", reasonAgainstFile(empty));
  const std::string junk = folder.write("junk.plist", "junk");
  EXPECT_EQ(junk + ": is not a property list, nor a text of ioreg", reasonAgainstFile(junk));
}

TEST(ArchiveFiles, WhatHoldsOrIsAnotherFormOfAnArchiveIsToldApart) {
  std::string tar(512, '\0');
  tar.replace(257, 5, "ustar");
  const struct {
    std::string bytes;
    const char* reason;
  } rows[] = {
      {tar, "is a tar archive: unpack it, and name the file of ioreg in it"},
      {"PK\x03\x04...", "is a zip archive: unpack it, and name the file of ioreg in it"},
      {std::string("\xFF\xFE+\0-\0o\0", 8), "is a text in UTF-16: convert it to UTF-8"},
      {std::string("\xFE\xFF\0+\0-\0o", 8), "is a text in UTF-16: convert it to UTF-8"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(std::string("it: ") + row.reason, reasonAgainst(row.bytes));
    EXPECT_EQ(std::string("it: unpacked: ") + row.reason, reasonAgainst(packed(row.bytes)));
  }
}

TEST(ArchiveFiles, APipeIsRefusedWithoutWaitingForAWriter) {
  const TemporaryFolder folder;
  const std::string pipe = folder.path() + "/pipe";
  ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
  EXPECT_EQ(pipe + ": is not an ordinary file", reasonAgainstFile(pipe));
}

TEST(ArchiveFiles, AFileAbove512MiBIsRefusedUnread) {
  const TemporaryFolder folder;
  const std::string file = folder.write("large.plist", "x");
  ASSERT_EQ(0, ::truncate(file.c_str(), (off_t{512} << 20) + 1));
  EXPECT_EQ(file + ": is larger than 512 MiB", reasonAgainstFile(file));
}

// Memory that is reserved and never written.
TEST(ArchiveFiles, WhatIsLookedAtMayHave512MiBAndNoMore) {
  constexpr std::size_t largest = std::size_t{512} << 20U;
  void* const memory =
      ::mmap(nullptr, largest + 1, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(MAP_FAILED, memory);
  const auto reason = [memory](std::size_t size) {
    try {
      MemoryRegistry::parseArchive(static_cast<const char*>(memory), size, "zeros");
    } catch (const MemoryRegistry::ArchiveError& error) {
      return std::string(error.what());
    }
    return std::string();
  };
  EXPECT_EQ("zeros: is not a property list, nor a text of ioreg", reason(largest));
  EXPECT_EQ("zeros: is larger than 512 MiB", reason(largest + 1));
  ::munmap(memory, largest + 1);
}

TEST(ArchiveFiles, AnErrorIsOneLineWhateverTheFilesName) {
  EXPECT_EQ("a?b?[31m: cannot be read: No such file or directory",
            reasonAgainstFile("a\nb\x1B[31m"));
  EXPECT_EQ("a?b? ~: cannot be read: No such file or directory", reasonAgainstFile("a\x1F"
                                                                                   "b\x7F ~"));
}
