#pragma once

#include <cstdint>
#include <vector>

#include "platform/registry/memory/Entry.h"
#include "platform/registry/memory/RegistryIterator.h"

namespace MemoryRegistry {

class DoneMarks;
class Graph;

enum class Direction { Down, Up };

// A live walk over children or parents. Each level of it is one entry's links, with the stamp that
// they had when the level was opened; links that change under an open level end that level, and
// from then on nothing new is entered.
class Walk final : public RegistryIterator {
 public:
  explicit Walk(Graph& graph) : _graph(graph) { _levels.reserve(64); }

  void begin(Entry& start, Direction direction, bool recursive);

  Entry* next() override;
  bool isValid() override;
  void reset() override;
  void recycle() noexcept override;

 private:
  struct Level {
    Entry* const* cursor;
    Entry* const* end;
    std::uint64_t stamp;
    std::uint32_t owner;  // its slot
    bool broken;          // the links have changed
  };

  const Links& linksOf(const Entry& entry) const { return entry.*_links; }
  Entry* take(Level& level);
  Entry* nextOutside();
  void enter();
  [[gnu::noinline]] void open(const Links& links);
  [[gnu::cold]] void catchUp();
  void abandon(Level& level);

  Graph& _graph;
  DoneMarks* _done = nullptr;  // null: not recursive
  Entry* _toEnter = nullptr;   // opened by the next step; its slot and birth
  std::uint32_t _toEnterSlot = 0;
  std::uint64_t _toEnterBirth = 0;
  std::uint64_t _seenChanges = 0;
  std::vector<Level> _levels;
  Links Entry::*_links = &Entry::children;
  bool _valid = true;
  std::uint32_t _startSlot = 0;  // of the entry where it starts, and that entry's birth
  std::uint64_t _startBirth = 0;
};

}  // namespace MemoryRegistry
