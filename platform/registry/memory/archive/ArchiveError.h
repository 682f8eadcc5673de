#pragma once

#include <stdexcept>
#include <string>

namespace MemoryRegistry {

// A file or folder that can't be read, parsed or understood. what() is one line,
// "<file>: <reason>", fit for a terminal: control characters of the name are shown as "?".
class ArchiveError : public std::runtime_error {
 public:
  ArchiveError(const std::string& file, const std::string& reason);
};

}  // namespace MemoryRegistry
