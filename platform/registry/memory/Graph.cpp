#include "platform/registry/memory/Graph.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace MemoryRegistry {

namespace {

constexpr EntryID rootID = 0x100000100;

template <class Element>
void makeRoom(std::vector<Element>& elements) {
  if (elements.size() == elements.capacity()) {
    elements.reserve(std::max<std::size_t>(1, 2 * elements.size()));
  }
}

bool contains(const std::vector<Entry*>& entries, const Entry& entry) {
  return std::find(entries.begin(), entries.end(), &entry) != entries.end();
}

void remove(std::vector<Entry*>& entries, const Entry& entry) {
  entries.erase(std::find(entries.begin(), entries.end(), &entry));
}

auto placeOf(const std::vector<std::unique_ptr<Entry>>& entries, EntryID id) {
  return std::lower_bound(entries.begin(), entries.end(), id,
                          [](const auto& entry, EntryID sought) { return entry->id < sought; });
}

}  // namespace

// Never destroyed: static objects may give their handles back after everything else is gone.
void Graph::create() { _instance = new Graph; }

Graph::Graph() { reset(); }

std::unique_ptr<Entry> Graph::makeRoot() {
  EntryDescription description;
  description.className = "IORegistryEntry";
  description.name = "Root";
  auto root = std::make_unique<Entry>();
  root->id = rootID;
  root->facts = factsOf(std::move(description));
  return root;
}

void Graph::reset() {
  auto root = makeRoot();
  makeRoom(_entries);
  _handles.reserve(1);

  closeIterators();
  _handles.closeAll();
  for (const auto& entry : _entries)
    leaveClass(*entry);
  _entries.clear();
  _root = root.get();
  _entries.push_back(std::move(root));
  enroll(*_root);
  _nextID = rootID + 1;
}

Entry* Graph::find(EntryID id) const {
  const auto place = placeOf(_entries, id);
  return place != _entries.end() && (*place)->id == id ? place->get() : nullptr;
}

Entry& Graph::require(EntryID id) const {
  Entry* entry = find(id);
  if (entry == nullptr) {
    throw std::invalid_argument("no entry with the ID " + std::to_string(id));
  }
  return *entry;
}

// Counting up from the highest ID so far. Content may use the very last one, hence the loop.
EntryID Graph::newID() const {
  EntryID id = _nextID;
  while (id == 0 || find(id) != nullptr)
    ++id;
  return id;
}

void Graph::enroll(Entry& entry) noexcept {
  entry.birth = ChangeCount::next();
  touch(entry.children);
  touch(entry.parents);
  entry.handle = _handles.open(entry);
  for (const auto& marks : _marks.all())
    marks->forget(HandleTable::placeOf(entry.handle));
  enterClass(entry);
}

void Graph::retire(Entry& entry) noexcept {
  ChangeCount::next();
  _handles.retire(entry.handle, entry.id);
  leaveClass(entry);
}

Entry& Graph::add(Entry& parent, EntryDescription description) {
  auto added = std::make_unique<Entry>();
  Entry& entry = *added;
  entry.facts = factsOf(std::move(description));
  entry.id = newID();
  entry.parents.entries.push_back(&parent);
  _handles.reserve(1);
  makeRoom(_entries);
  touch(parent.children);
  parent.children.entries.push_back(&entry);

  _entries.insert(placeOf(_entries, entry.id), std::move(added));
  _nextID = entry.id + 1;
  enroll(entry);
  return entry;
}

void Graph::link(Entry& child, Entry& parent) {
  if (contains(child.parents.entries, parent)) {
    throw std::invalid_argument("a second link between the same two entries");
  }
  if (&child == _root || &child == &parent || isAncestor(parent, child)) {
    throw std::invalid_argument("an entry beneath itself, or the root beneath another");
  }
  // Before memory moves: walks look at the stamp only.
  touch(parent.children);
  touch(child.parents);
  makeRoom(parent.children.entries);
  makeRoom(child.parents.entries);
  parent.children.entries.push_back(&child);
  child.parents.entries.push_back(&parent);
}

void Graph::unlink(Entry& child, Entry& parent) {
  if (!contains(child.parents.entries, parent)) {
    throw std::invalid_argument("no link between the two entries");
  }
  touch(parent.children);
  touch(child.parents);
  remove(parent.children.entries, child);
  remove(child.parents.entries, parent);
}

bool Graph::isAncestor(const Entry& of, Entry& candidate) {
  if (candidate.children.entries.empty()) return false;
  DoneMarks& seen = *_marks.take();
  bool found = false;
  try {
    seen.begin(_handles.slots().size());
    std::vector<const Entry*> toClimb = {&of};
    while (!toClimb.empty() && !found) {
      const Entry* entry = toClimb.back();
      toClimb.pop_back();
      found = entry == &candidate;
      for (const Entry* parent : entry->parents.entries) {
        if (seen.set(HandleTable::placeOf(parent->handle))) toClimb.push_back(parent);
      }
    }
  } catch (...) {
    _marks.give(&seen);
    throw;
  }
  _marks.give(&seen);
  return found;
}

std::vector<Entry*> Graph::onlyBeneath(Entry& top) const {
  std::vector<Entry*> doomed = {&top};
  std::unordered_map<const Entry*, std::size_t> holders;
  for (std::size_t next = 0; next < doomed.size(); ++next) {
    for (Entry* child : doomed[next]->children.entries) {
      const auto known = holders.emplace(child, child->parents.entries.size()).first;
      if (--known->second == 0) doomed.push_back(child);
    }
  }
  return doomed;
}

void Graph::terminate(Entry& entry) {
  if (&entry == _root) throw std::invalid_argument("the root can't be terminated");
  const std::vector<Entry*> doomed = onlyBeneath(entry);
  for (Entry* parent : entry.parents.entries) {
    touch(parent->children);
    remove(parent->children.entries, entry);
  }
  for (Entry* gone : doomed) {
    for (Entry* child : gone->children.entries) {
      touch(child->parents);
      remove(child->parents.entries, *gone);
    }
  }
  for (Entry* gone : doomed) {
    retire(*gone);
    gone->birth = 0;  // the mark for what follows
  }
  _entries.erase(std::remove_if(_entries.begin(), _entries.end(),
                                [](const auto& candidate) { return candidate->birth == 0; }),
                 _entries.end());
}

Handle Graph::openIterator(RegistryIterator& iterator, Slot::Kind kind) {
  try {
    const Handle handle = _handles.open(iterator, kind);
    return HandleTable::hold(handle);
  } catch (...) {
    iterator.recycle();
    throw;
  }
}

Handle Graph::openWalk(Entry& start, Direction direction, bool recursive) {
  Walk& walk = *_walks.take(*this);
  try {
    walk.begin(start, direction, recursive);
  } catch (...) {
    walk.recycle();
    throw;
  }
  return openIterator(walk, recursive ? Slot::Kind::RecursiveWalk : Slot::Kind::OtherIterator);
}

Handle Graph::openSnapshot(const Links& links) {
  Snapshot& snapshot = *_snapshots.take(*this);
  try {
    snapshot.begin(links);
  } catch (...) {
    snapshot.recycle();
    throw;
  }
  return openIterator(snapshot, Slot::Kind::OtherIterator);
}

void Graph::closeIterators() noexcept {
  for (const Slot& slot : _handles.slots()) {
    if (slot.isIterator()) slot.iterator->recycle();
  }
}

}  // namespace MemoryRegistry
