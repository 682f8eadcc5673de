#include "platform/registry/memory/archive/ContentBuilder.h"

#include <utility>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/EntryGraph.h"
#include "platform/registry/memory/archive/EntryPrint.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {

bool ContentBuilder::enter(EntryID id) {
  if (_open.size() == deepestEntry) {
    throw Refusal("entries are nested deeper than " + decimal(deepestEntry) + " levels");
  }
  const std::size_t known = _content.entries.size();
  const std::size_t entry = place(id);
  if (_isOpen[entry]) throw Refusal(entryText(id) + " is beneath itself");
  if (!_open.empty()) link(_content, _open.back(), entry);
  _open.push_back(entry);
  _isOpen[entry] = true;
  return entry == known;
}

void ContentBuilder::leave() {
  _isOpen[_open.back()] = false;
  _open.pop_back();
}

RegistryContent ContentBuilder::finish() {
  checkGraph(_content);
  return std::move(_content);
}

// Where the entry stands in the content; its first print puts it there.
std::size_t ContentBuilder::place(EntryID id) {
  const auto [known, isNew] = _places.try_emplace(id, _content.entries.size());
  if (isNew) {
    _content.entries.emplace_back().id = id;
    _isOpen.push_back(false);
  }
  return known->second;
}

}  // namespace MemoryRegistry
