#pragma once

#include <cstdint>

#include "platform/registry/memory/archive/Refusal.h"

namespace MemoryRegistry {

// What may still be taken for the content of an archive.
class MemoryBudget {
 public:
  explicit MemoryBudget(std::uint64_t bytes) : _left(bytes) {}

  // Throws TooRepetitive when less is left.
  void take(std::uint64_t bytes) {
    if (bytes > _left) {
      throw TooRepetitive();
    }
    _left -= bytes;
  }

 private:
  std::uint64_t _left;
};

}  // namespace MemoryRegistry
