#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/registry/memory/ChangeCount.h"
#include "platform/registry/memory/DoneMarks.h"
#include "platform/registry/memory/Entry.h"
#include "platform/registry/memory/HandleTable.h"
#include "platform/registry/memory/RegistryIterator.h"

namespace MemoryRegistry {

class Graph;

enum class Direction { Down, Up };

// A live walk over children or parents. Each level of it is one entry's links, with the stamp that
// they had when the level was opened; links that change under an open level end that level, and
// from then on nothing new is entered.
class Walk final : public RegistryIterator {
 public:
  explicit Walk(Graph& graph);

  void begin(Entry& start, Direction direction, bool recursive);

  // What next() does, for the usual step of a recursive walk: no call, no memory. False when it
  // takes more; then nothing has been done, and next() is to be asked.
  bool takeUsual(Handle& next);

  Handle next() override;
  bool isValid() override;
  void reset() override;
  void recycle() noexcept override;

 private:
  struct Level {
    Entry* const* cursor;
    Entry* const* end;
    std::uint64_t stamp;
    std::uint32_t owner;  // its slot, or Broken when the links have changed
  };
  static constexpr std::uint32_t Broken = UINT32_MAX;

  const Links& linksOf(const Entry& entry) const { return entry.*_links; }
  Handle takeAndMark(Level& level);
  Handle take(Level& level);
  Handle nextOutside();
  void enter();
  void open(const Links& links);
  void deepen();
  [[gnu::cold]] void catchUp();
  void abandon(Level& level);
  void invalidate();

  Level* ground() { return _levels.data(); }

  std::uint64_t _seenChanges = 0;
  Entry* _toEnter = nullptr;  // opened by the next step; its slot and birth
  std::uint32_t _toEnterSlot = 0;
  bool _valid = true;
  std::uint64_t _toEnterBirth = 0;
  Level* _level = nullptr;     // the innermost one
  Level* _deepest = nullptr;   // the last one that may be: that there is room for, or the ground
  DoneMarks* _done = nullptr;  // null: not recursive
  Links Entry::*_links = &Entry::children;
  Graph& _graph;
  // The first is the ground beneath all levels: empty, and broken, so that nothing goes below it.
  std::vector<Level> _levels;
  std::uint32_t _startSlot = 0;  // of the entry where it starts, and that entry's birth
  std::uint64_t _startBirth = 0;
};

// The next entry of a level of a recursive walk; the level has one.
inline Handle Walk::takeAndMark(Level& level) {
  Entry* const entry = *level.cursor++;
  const Handle handle = entry->handle;
  const std::uint32_t slot = HandleTable::placeOf(handle);
  const std::uint64_t birth = entry->birth;
  if (_done->set(slot)) {
    _toEnter = entry;
    _toEnterSlot = slot;
    _toEnterBirth = birth;
  } else {
    _toEnter = nullptr;
  }
  return handle;
}

inline bool Walk::takeUsual(Handle& next) {
  if (_seenChanges != ChangeCount::now()) return false;
  if (_toEnter != nullptr) {
    const Links& links = linksOf(*_toEnter);
    Entry* const* const first = links.entries.data();
    Entry* const* const end = first + links.entries.size();
    if (first != end) {
      if (_level >= _deepest) return false;
      *++_level = {first, end, links.stamp, _toEnterSlot};
      next = HandleTable::hold(takeAndMark(*_level));
      return true;
    }
  }
  Level* level = _level;
  if (level->cursor == level->end) {
    do {
      if (level->owner == Broken) return false;
      --level;
    } while (level->cursor == level->end);
    _level = level;
  }
  next = HandleTable::hold(takeAndMark(*level));
  return true;
}

}  // namespace MemoryRegistry
