#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace MemoryRegistry {

// The bytes of a file, in memory that was not cleared before.
struct FileContent {
  std::unique_ptr<char[]> bytes;
  std::size_t size = 0;
};

// The whole file, read once; what it grows by in the meantime is not seen, and when it shrinks the
// rest is. Throws ArchiveError when it can't be read, is empty, is no file or is too large.
FileContent readFile(const std::string& file);

}  // namespace MemoryRegistry
