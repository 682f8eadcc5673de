#pragma once

#include <cstdint>

namespace MemoryRegistry {

// Goes up with every change of links, and with every entry that comes or goes. Known without the
// graph, of which there is one per process, because every step of a walk looks at it.
class ChangeCount {
 public:
  static std::uint64_t now() { return _count; }
  static std::uint64_t next() { return ++_count; }

 private:
  inline static std::uint64_t _count = 0;
};

}  // namespace MemoryRegistry
