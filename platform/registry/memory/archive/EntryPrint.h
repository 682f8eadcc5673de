#pragma once

#include <plist/plist.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// What ioreg puts beside an entry's properties each time it prints the entry. The texts belong to
// the property list.
struct EntryPrint {
  EntryID id = 0;
  std::string_view className;
  std::string_view name;      // the class's when not printed; may be empty
  std::string_view location;  // likewise
  plist_t inheritance = nullptr;
  std::optional<std::uint32_t> state;
  plist_t children = nullptr;
};

// Throws Refusal when `dictionary` isn't the print of an entry; `parent` (0 for the root) helps to
// say which.
EntryPrint readPrint(plist_t dictionary, EntryID parent);

// The classes of the print, root first, ending in its own; empty when not printed.
std::vector<std::string> readInheritance(const EntryPrint& print);

// True for the keys that ioreg adds: they are no properties.
bool isSyntheticKey(std::string_view key);

// "entry 0x..." for messages.
std::string entryText(EntryID id);

}  // namespace MemoryRegistry
