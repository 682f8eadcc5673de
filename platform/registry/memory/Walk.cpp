#include "platform/registry/memory/Walk.h"

#include "platform/registry/memory/Graph.h"

namespace MemoryRegistry {

Walk::Walk(Graph& graph) : _graph(graph), _levels(64) {
  _levels.front().owner = Broken;
  _level = ground();
}

void Walk::begin(Entry& start, Direction direction, bool recursive) {
  _links = direction == Direction::Down ? &Entry::children : &Entry::parents;
  _startSlot = HandleTable::placeOf(start.handle);
  _startBirth = start.birth;
  if (recursive && _done == nullptr) _done = _graph.marks().take();
  reset();
}

void Walk::reset() {
  _level = ground();
  _deepest = &_levels.back();
  _valid = true;
  _toEnter = _graph.alive(_startSlot, _startBirth);
  _toEnterSlot = _startSlot;
  _toEnterBirth = _startBirth;
  _seenChanges = ChangeCount::now();
  if (_done != nullptr) _done->begin(_graph.handles().slots().size());
}

void Walk::recycle() noexcept {
  if (_done != nullptr) _graph.marks().give(_done);
  _done = nullptr;
  _graph.giveBack(*this);
}

Handle Walk::next() {
  if (_seenChanges != ChangeCount::now()) catchUp();
  if (_toEnter != nullptr) enter();
  if (_level == ground()) return 0;
  return _level->cursor != _level->end ? take(*_level) : nextOutside();
}

// The next entry of a level, which has one.
Handle Walk::take(Level& level) {
  return _done != nullptr ? takeAndMark(level) : (*level.cursor++)->handle;
}

void Walk::enter() {
  const Links& links = linksOf(*_toEnter);
  // An empty level would be left at once; but the outermost is kept to the end.
  if (!links.entries.empty() || _level == ground()) open(links);
  _toEnter = nullptr;
}

void Walk::open(const Links& links) {
  if (!_valid) return;
  if (_level == _deepest) deepen();
  Entry* const* first = links.entries.data();
  *++_level = {first, first + links.entries.size(), links.stamp, _toEnterSlot};
}

// The innermost level has nothing more.
Handle Walk::nextOutside() {
  Level* const outermost = ground() + 1;
  while (true) {
    if (_level->owner == Broken) invalidate();
    if (_level == outermost) return 0;  // it stays, as the one to be judged by
    --_level;
    if (_level->cursor != _level->end) return take(*_level);
  }
}

// From now on nothing is entered.
void Walk::invalidate() {
  _valid = false;
  _deepest = ground();
}

// Makes room for as many levels again.
void Walk::deepen() {
  const auto depth = static_cast<std::size_t>(_level - ground());
  _levels.resize(2 * _levels.size());
  _level = ground() + depth;
  _deepest = &_levels.back();
}

bool Walk::isValid() {
  if (_seenChanges != ChangeCount::now()) catchUp();
  if (!_valid) return false;
  for (const Level* level = ground() + 1; level <= _level; ++level) {
    if (level->owner == Broken) return false;
  }
  return true;
}

// Looks at every open level once after a change, so that a step pays one comparison when there was
// none. Nothing that a level points to is touched before: it may be gone.
void Walk::catchUp() {
  if (_done != nullptr) _done->reach(_graph.handles().slots().size());
  for (Level* level = ground() + 1; level <= _level; ++level) {
    if (level->owner == Broken) continue;
    const Entry* owner = _graph.entryAt(level->owner);
    if (owner == nullptr || linksOf(*owner).stamp != level->stamp) abandon(*level);
  }
  if (_toEnter != nullptr) _toEnter = _graph.alive(_toEnterSlot, _toEnterBirth);
  _seenChanges = ChangeCount::now();
}

void Walk::abandon(Level& level) {
  level.owner = Broken;
  level.cursor = level.end = nullptr;
}

}  // namespace MemoryRegistry
