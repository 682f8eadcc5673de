#include "platform/registry/memory/Replacement.h"

#include <algorithm>
#include <utility>

namespace MemoryRegistry {

Replacement::Replacement(Graph& graph, RegistryContent content)
    : _graph(graph), _order(orderOfValid(content)), _nextID(graph._nextID) {
  _prepared.resize(content.entries.size());
  _entries.resize(content.entries.size());
  matchEntries(content, _order);
  prepareLinks(content);
  for (Place place = 0; place < _prepared.size(); ++place) {
    _prepared[place].facts = factsOf(std::move(content.entries[place].description));
  }
}

// Both sides are in ascending order of ID, so one pass finds what stays.
void Replacement::matchEntries(const RegistryContent& content, const std::vector<Place>& order) {
  auto current = _graph._entries.begin();
  const auto end = _graph._entries.end();
  std::size_t added = 0;
  for (std::size_t index = 0; index < order.size(); ++index) {
    const EntryID id = content.entries[order[index]].id;
    Prepared& prepared = _prepared[order[index]];
    while (current != end && (*current)->id < id)
      ++current;
    prepared.isNew = current == end || (*current)->id != id;
    if (prepared.isNew) {
      _entries[index] = std::make_unique<Entry>();
      _entries[index]->id = id;
      prepared.entry = _entries[index].get();
      ++added;
    } else {
      prepared.entry = current->get();
    }
    // The very last ID has no successor.
    if (id >= _nextID && id + 1 != 0) _nextID = id + 1;
  }
  _graph._handles.reserve(added);
}

void Replacement::prepareLinks(const RegistryContent& content) {
  for (Place place = 0; place < _prepared.size(); ++place) {
    Prepared& prepared = _prepared[place];
    const RegistryContent::Entry& entry = content.entries[place];
    prepared.childrenChange =
        resolve(entry.children, prepared.isNew, prepared.entry->children, prepared.children);
    prepared.parentsChange =
        resolve(entry.parents, prepared.isNew, prepared.entry->parents, prepared.parents);
  }
}

// False when the links are the same as they are now: then they stay untouched, for the walks that
// are on them.
bool Replacement::resolve(const std::vector<Place>& places, bool isNew, const Links& current,
                          std::vector<Entry*>& resolved) const {
  if (!isNew && std::equal(places.begin(), places.end(), current.entries.begin(),
                           current.entries.end(), [this](Place place, const Entry* entry) {
                             return _prepared[place].entry == entry;
                           })) {
    return false;
  }
  resolved.reserve(places.size());
  for (const Place place : places)
    resolved.push_back(_prepared[place].entry);
  return true;
}

void Replacement::commit() noexcept {
  retireTheRest();
  for (Prepared& prepared : _prepared)
    put(prepared);
  _graph._entries.swap(_entries);
  _graph._root = _prepared.front().entry;
  _graph._nextID = _nextID;
}

// Takes over the entries that stay; those that are not in the content go.
void Replacement::retireTheRest() noexcept {
  std::size_t index = 0;
  for (auto& current : _graph._entries) {
    while (index < _order.size() && _prepared[_order[index]].entry->id < current->id)
      ++index;
    if (index < _order.size() && _prepared[_order[index]].entry == current.get()) {
      _entries[index] = std::move(current);
    } else {
      _graph.retire(*current);
    }
  }
}

void Replacement::put(Prepared& prepared) noexcept {
  Entry& entry = *prepared.entry;
  if (prepared.childrenChange) {
    entry.children.entries = std::move(prepared.children);
    _graph.touch(entry.children);
  }
  if (prepared.parentsChange) {
    entry.parents.entries = std::move(prepared.parents);
    _graph.touch(entry.parents);
  }
  if (!prepared.isNew) leaveClass(entry);
  entry.facts = std::move(prepared.facts);
  if (prepared.isNew) {
    _graph.enroll(entry);
  } else {
    enterClass(entry);
  }
}

void Graph::replace(RegistryContent content) { Replacement(*this, std::move(content)).commit(); }

}  // namespace MemoryRegistry
