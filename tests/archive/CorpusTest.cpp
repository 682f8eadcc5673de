#include <gmock/gmock.h>

#include "tests/archive/Support.h"

using MemoryRegistry::ArchiveError;
using MemoryRegistry::readArchive;
using testing::HasSubstr;

// Files whose every byte matters, and what is said against them.
TEST(Corpus, IsRefusedFileByFile) {
  const struct {
    const char* file;
    const char* reason;
  } rows[] = {
      {"array-refers-to-itself.plist", "has an object within itself"},
      {"class-cut-short.plist", "ends in the middle"},
      {"dates-in-a-million-copies.plist", "is too repetitive"},
      {"entities-declared.plist", "declarations of its own"},
      {"gzip-cut-off.plist", "has gzip data that are cut off"},
      {"gzip-damaged.plist", "has gzip data that are damaged"},
      {"gzip-of-nothing.plist", "is empty once unpacked"},
      {"gzip-with-something-behind-it.plist", "has something after its gzip data"},
      {"gzip-within-gzip.plist", "unpacked: is not a property list"},
      {"length-of-2-to-the-63.plist", "an object is not within the file"},
      {"lone-surrogate.plist", "a text that is none"},
      {"overlong-utf-8.plist", "not UTF-8"},
      {"table-beyond-the-end.plist", "its table of objects is not within the file"},
      {"text-cut-off-by-a-terminal.txt", "line 3: a value that is cut off"},
      {"text-with-a-key-over-two-lines.txt", "line 4: neither a property nor the end"},
      {"text-with-two-roots.txt", "line 5: a second root"},
      {"text-without-properties.txt", "has no properties"},
      {"utf-16.plist", "is a text in UTF-16"},
  };
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(CORPUS))
    ++files;
  EXPECT_EQ(std::size(rows), files);
  for (const auto& row : rows) {
    try {
      readArchive(std::string(CORPUS "/") + row.file);
      ADD_FAILURE() << row.file << " was read";
    } catch (const ArchiveError& error) {
      EXPECT_THAT(error.what(), HasSubstr(row.reason)) << row.file;
      EXPECT_THAT(error.what(), HasSubstr(row.file));
    }
  }
}
