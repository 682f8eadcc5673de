#include "platform/registry/memory/Walk.h"

#include "platform/registry/memory/DoneMarks.h"
#include "platform/registry/memory/Graph.h"

namespace MemoryRegistry {

void Walk::begin(Entry& start, Direction direction, bool recursive) {
  _links = direction == Direction::Down ? &Entry::children : &Entry::parents;
  _startSlot = HandleTable::placeOf(start.handle);
  _startBirth = start.birth;
  if (recursive && _done == nullptr) _done = _graph.marks().take();
  reset();
}

void Walk::reset() {
  _levels.clear();
  _valid = true;
  _toEnter = _graph.alive(_startSlot, _startBirth);
  _toEnterSlot = _startSlot;
  _toEnterBirth = _startBirth;
  _seenChanges = _graph.changes();
  if (_done != nullptr) _done->begin(_graph.handles().slots().size());
}

void Walk::recycle() noexcept {
  if (_done != nullptr) _graph.marks().give(_done);
  _done = nullptr;
  _graph.giveBack(*this);
}

// The next entry of a level, which has one.
inline Entry* Walk::take(Level& level) {
  Entry* const entry = *level.cursor;
  const std::uint32_t slot = HandleTable::placeOf(entry->handle);
  if (_done != nullptr && _done->set(slot)) {
    _toEnter = entry;
    _toEnterSlot = slot;
    _toEnterBirth = entry->birth;
  }
  ++level.cursor;
  return entry;
}

// Most steps end here; what is rare is kept apart, so that they stay short.
Entry* Walk::next() {
  if (_seenChanges != _graph.changes()) catchUp();
  if (_toEnter != nullptr) enter();
  if (_levels.empty()) return nullptr;
  Level& level = _levels.back();
  return level.cursor != level.end ? take(level) : nextOutside();
}

// The innermost level has nothing more.
Entry* Walk::nextOutside() {
  while (true) {
    if (_levels.back().broken) _valid = false;
    if (_levels.size() == 1) return nullptr;  // the outermost stays, as the one to be judged by
    _levels.pop_back();
    Level& level = _levels.back();
    if (level.cursor != level.end) return take(level);
  }
}

inline void Walk::enter() {
  const Links& links = linksOf(*_toEnter);
  // An empty level would be left at once; but the outermost is kept to the end.
  if (!links.entries.empty() || _levels.empty()) open(links);
  _toEnter = nullptr;
}

void Walk::open(const Links& links) {
  if (!_valid) return;
  Entry* const* first = links.entries.data();
  _levels.push_back({first, first + links.entries.size(), links.stamp, _toEnterSlot, false});
}

bool Walk::isValid() {
  if (_seenChanges != _graph.changes()) catchUp();
  if (!_valid) return false;
  for (const Level& level : _levels) {
    if (level.broken) return false;
  }
  return true;
}

// Looks at every open level once after a change, so that a step pays one comparison when there was
// none. Nothing that a level points to is touched before: it may be gone.
void Walk::catchUp() {
  for (Level& level : _levels) {
    if (level.broken) continue;
    const Entry* owner = _graph.entryAt(level.owner);
    if (owner == nullptr || linksOf(*owner).stamp != level.stamp) abandon(level);
  }
  if (_toEnter != nullptr) _toEnter = _graph.alive(_toEnterSlot, _toEnterBirth);
  _seenChanges = _graph.changes();
}

void Walk::abandon(Level& level) {
  level.broken = true;
  level.cursor = level.end = nullptr;
}

}  // namespace MemoryRegistry
