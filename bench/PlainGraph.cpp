#include "bench/PlainGraph.h"

#include <algorithm>
#include <unordered_map>

namespace Bench {

using MemoryRegistry::EntryID;

PlainGraph::PlainGraph(EntryID top, const std::vector<EntryID>& marked) {
  std::unordered_map<EntryID, Entry*> known;
  std::vector<EntryID> unread = {top};
  const auto entryOf = [&](EntryID id) {
    Entry*& entry = known[id];
    if (entry == nullptr) {
      _entries.push_back(std::make_unique<Entry>());
      entry = _entries.back().get();
      if (std::count(marked.begin(), marked.end(), id) != 0) entry->classes = 1;
    }
    return entry;
  };
  _top = entryOf(top);
  while (!unread.empty()) {
    const EntryID id = unread.back();
    unread.pop_back();
    Entry* const entry = entryOf(id);
    if (!entry->children.empty()) continue;  // read under another parent
    for (const EntryID child : MemoryRegistry::children(id)) {
      entry->children.push_back(entryOf(child));
      unread.push_back(child);
    }
  }
}

std::size_t PlainGraph::walk(std::size_t& steps) {
  ++_walk;
  std::size_t found = 0;
  visit(*_top, steps, found);
  return found;
}

std::size_t PlainGraph::walkOnDemand(std::size_t& steps) {
  ++_walk;
  _toEnter = _top;
  std::size_t found = 0;
  while (const Entry* entry = next()) {
    ++steps;
    if ((entry->classes & 1U) != 0) ++found;
  }
  return found;
}

PlainGraph::Entry* PlainGraph::next() {
  if (_toEnter != nullptr) {
    Entry* const* const first = _toEnter->children.data();
    _levels.push_back({first, first + _toEnter->children.size()});
    _toEnter = nullptr;
  }
  while (!_levels.empty() && _levels.back().cursor == _levels.back().end)
    _levels.pop_back();
  if (_levels.empty()) return nullptr;
  Entry* const entry = *_levels.back().cursor++;
  if (entry->mark != _walk) {
    entry->mark = _walk;
    _toEnter = entry;
  }
  return entry;
}

void PlainGraph::visit(Entry& entry, std::size_t& steps, std::size_t& found) {
  for (Entry* child : entry.children) {
    ++steps;
    if ((child->classes & 1U) != 0) ++found;
    if (child->mark == _walk) continue;
    child->mark = _walk;
    visit(*child, steps, found);
  }
}

}  // namespace Bench
