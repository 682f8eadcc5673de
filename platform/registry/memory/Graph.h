#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/registry/memory/ChangeCount.h"
#include "platform/registry/memory/DoneMarks.h"
#include "platform/registry/memory/Entry.h"
#include "platform/registry/memory/HandleTable.h"
#include "platform/registry/memory/Pool.h"
#include "platform/registry/memory/Snapshot.h"
#include "platform/registry/memory/Walk.h"

namespace MemoryRegistry {

// The entries, their links, their handles and the iterators over them.
//
// Ownership: entries belong to the graph, and live until they are terminated or replaced.
// Failure:   std::invalid_argument and std::bad_alloc leave the graph as it was.
class Graph {
 public:
  static Graph& instance() {
    if (_instance == nullptr) create();
    return *_instance;
  }

  Graph(const Graph&) = delete;
  Graph& operator=(const Graph&) = delete;

  // ---- Entries
  Entry& root() { return *_root; }
  Entry* find(EntryID id) const;  // null when there is none
  Entry& require(EntryID id) const;
  std::size_t size() const { return _entries.size(); }

  Entry& add(Entry& parent, EntryDescription description);
  void link(Entry& child, Entry& parent);
  void unlink(Entry& child, Entry& parent);
  void terminate(Entry& entry);
  void replace(RegistryContent content);
  void reset();

  // ---- By slot
  Entry* entryAt(std::uint32_t slot) const {
    const Slot& found = _handles.slots()[slot];
    return found.kind == Slot::Kind::Entry ? found.entry : nullptr;
  }
  // The entry that has had this slot since this birth; null when it is gone.
  Entry* alive(std::uint32_t slot, std::uint64_t birth) const {
    Entry* entry = entryAt(slot);
    return entry != nullptr && entry->birth == birth ? entry : nullptr;
  }

  // ---- Handles and iterators
  HandleTable& handles() { return _handles; }
  const HandleTable& handles() const { return _handles; }
  Pool<DoneMarks>& marks() { return _marks; }

  // One more reference on the entry.
  static Handle hold(const Entry& entry) { return HandleTable::hold(entry.handle); }
  // Iterators with one reference.
  Handle openWalk(Entry& start, Direction direction, bool recursive);
  Handle openSnapshot(const Links& links);
  void giveBack(Walk& walk) noexcept { _walks.give(&walk); }
  void giveBack(Snapshot& snapshot) noexcept { _snapshots.give(&snapshot); }

 private:
  friend class Replacement;

  // Ascending by ID.
  using Entries = std::vector<std::unique_ptr<Entry>>;

  Graph();

  [[gnu::cold]] static void create();
  static std::unique_ptr<Entry> makeRoot();
  EntryID newID() const;
  void enroll(Entry& entry) noexcept;
  void retire(Entry& entry) noexcept;
  void touch(Links& links) noexcept { links.stamp = ChangeCount::next(); }
  bool isAncestor(const Entry& of, Entry& candidate);
  std::vector<Entry*> onlyBeneath(Entry& top) const;
  Handle openIterator(RegistryIterator& iterator, Slot::Kind kind);
  void closeIterators() noexcept;

  inline static Graph* _instance = nullptr;

  Entries _entries;
  Entry* _root = nullptr;
  EntryID _nextID = 0;
  HandleTable _handles;
  Pool<DoneMarks> _marks;
  Pool<Walk> _walks;
  Pool<Snapshot> _snapshots;
};

}  // namespace MemoryRegistry
