#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// Makes the content of a registry of the prints of its entries, met depth first: what is printed
// several times becomes one entry with several parents. Throws Refusal on an entry beneath itself
// and on one deeper than deepestEntry.
class ContentBuilder {
 public:
  // Opens a print beneath the one that is open, if any. True when it is the entry's first: then
  // description() is to be filled in, and of the others nothing but the children counts.
  bool enter(EntryID id);
  // Closes the print that was opened last.
  void leave();

  // Of the print that was opened last.
  EntryDescription& description() { return _content.entries[_open.back()].description; }
  // Its ID; 0 when none is open.
  EntryID openID() const { return _open.empty() ? 0 : _content.entries[_open.back()].id; }
  std::size_t depth() const { return _open.size(); }

  RegistryContent finish();

 private:
  std::size_t place(EntryID id);

  RegistryContent _content;
  std::unordered_map<EntryID, std::size_t> _places;
  std::vector<bool> _isOpen;       // by place
  std::vector<std::size_t> _open;  // places, from the root to the print that is being read
};

}  // namespace MemoryRegistry
