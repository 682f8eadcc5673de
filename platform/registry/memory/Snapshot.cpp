#include "platform/registry/memory/Snapshot.h"

#include "platform/registry/memory/Graph.h"

namespace MemoryRegistry {

void Snapshot::begin(const Links& links) {
  _entries.clear();
  _entries.reserve(links.entries.size());
  for (const Entry* entry : links.entries) {
    _entries.push_back({HandleTable::placeOf(entry->handle), entry->birth});
  }
  _place = 0;
}

std::uint32_t Snapshot::next() {
  while (_place < _entries.size()) {
    const Seen& seen = _entries[_place++];
    if (Entry* entry = _graph.alive(seen.slot, seen.birth)) return entry->handle;
  }
  return 0;
}

void Snapshot::recycle() noexcept { _graph.giveBack(*this); }

}  // namespace MemoryRegistry
