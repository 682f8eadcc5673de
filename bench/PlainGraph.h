#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/registry/memory/MemoryRegistry.h"

namespace Bench {

// The graph beneath an entry of the registry once more, in plain structs: what a walk would cost if
// nothing stood between it and the entries.
class PlainGraph {
 public:
  // Entries whose class is in `marked` get the bit that walk() tests.
  PlainGraph(MemoryRegistry::EntryID top, const std::vector<MemoryRegistry::EntryID>& marked);

  // Depth first, as the registry's own: a shared entry is met each time, and entered once. Returns
  // how many entries with the bit were met, and adds all that were met to `steps`. Once by a
  // function that calls itself, once as the seam has it: one entry after the other on demand, with
  // a stack of its own.
  std::size_t walk(std::size_t& steps);
  std::size_t walkOnDemand(std::size_t& steps);

 private:
  struct Entry {
    std::vector<Entry*> children;
    std::uint64_t classes = 0;
    std::uint32_t mark = 0;  // the walk that entered it last
  };

  struct Level {
    Entry* const* cursor;
    Entry* const* end;
  };

  Entry* next();
  void visit(Entry& entry, std::size_t& steps, std::size_t& found);

  std::vector<std::unique_ptr<Entry>> _entries;
  Entry* _top = nullptr;
  std::uint32_t _walk = 0;
  std::vector<Level> _levels;
  Entry* _toEnter = nullptr;
};

}  // namespace Bench
