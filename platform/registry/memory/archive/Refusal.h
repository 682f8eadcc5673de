#pragma once

#include <stdexcept>

namespace MemoryRegistry {

// Why the archive at hand is refused, without its name: Archive.cpp makes an ArchiveError of it.
// The reasons never quote the archive, so that nothing of it reaches a terminal.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// For an archive that would take more than memoryLimit says.
class TooRepetitive : public Refusal {
 public:
  TooRepetitive()
      : Refusal("is too repetitive: it would take more than 20 times its size in memory") {}
};

}  // namespace MemoryRegistry
