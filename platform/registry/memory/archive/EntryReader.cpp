#include "platform/registry/memory/archive/EntryReader.h"

#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/EntryGraph.h"
#include "platform/registry/memory/archive/EntryPrint.h"
#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/PropertyReader.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

EntryDescription describe(EntryPrint& print) {
  EntryDescription description;
  description.className = print.className;
  description.name = print.name;
  description.location = print.location;
  description.inheritance = std::move(print.classes);
  description.state = print.state;
  description.properties = readProperties(print);
  return description;
}

// Goes through the prints depth first, in their order, with a stack of its own.
class EntryReader {
 public:
  RegistryContent read(plist_t top) {
    enter(top, 0);
    while (!_levels.empty()) {
      if (const plist_t child = _levels.back().unread.next()) {
        enter(child, _content.entries[_levels.back().entry].id);
      } else {
        leave();
      }
    }
    checkGraph(_content);
    return std::move(_content);
  }

 private:
  // An entry whose print is being read.
  struct Level {
    std::size_t entry;
    ArrayElements unread;  // of its children
  };

  void enter(plist_t dictionary, EntryID parent) {
    if (_levels.size() == deepestEntry) {
      throw Refusal("entries are nested deeper than " + decimal(deepestEntry) + " levels");
    }
    EntryPrint print = readPrint(dictionary, parent);
    const std::size_t entry = place(print);
    if (_isOpen[entry]) throw Refusal(entryText(print.id) + " is beneath itself");
    if (!_levels.empty()) link(_content, _levels.back().entry, entry);
    _levels.push_back({entry, ArrayElements(print.children)});
    _isOpen[entry] = true;
  }

  void leave() {
    _isOpen[_levels.back().entry] = false;
    _levels.pop_back();
  }

  // Where the entry stands in the content. The first print puts it there; of another one nothing
  // but the children counts.
  std::size_t place(EntryPrint& print) {
    const auto [known, isNew] = _places.try_emplace(print.id, _content.entries.size());
    if (isNew) {
      _content.entries.push_back({print.id, describe(print), {}, {}});
      _isOpen.push_back(false);
    }
    return known->second;
  }

  RegistryContent _content;
  std::unordered_map<EntryID, std::size_t> _places;
  std::vector<bool> _isOpen;  // by place: on the way to the print that is being read
  std::vector<Level> _levels;
};

}  // namespace

RegistryContent readEntries(plist_t top) {
  if (PLIST_IS_ARRAY(top)) {
    throw Refusal("has an array on top: an archive made with ioreg -r has no root");
  }
  if (!PLIST_IS_DICT(top)) throw Refusal("has no dictionary on top");
  return EntryReader().read(top);
}

}  // namespace MemoryRegistry
