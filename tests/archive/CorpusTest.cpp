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
      {"gzip.plist", "is not a property list"},
      {"length-of-2-to-the-63.plist", "an object is not within the file"},
      {"lone-surrogate.plist", "a text that is none"},
      {"overlong-utf-8.plist", "not UTF-8"},
      {"table-beyond-the-end.plist", "its table of objects is not within the file"},
      {"utf-16.plist", "is not a property list"},
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
