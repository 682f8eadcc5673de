#pragma once

#include <plist/plist.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// A property as it is printed.
struct PrintedProperty {
  std::string key;
  plist_t value;
};

// An entry as ioreg prints it: its properties, and what ioreg puts beside them. The texts and
// values belong to the property list.
struct EntryPrint {
  EntryID id = 0;
  std::string_view className;
  std::string_view name;             // the class's when not printed; may be empty
  std::string_view location;         // likewise
  std::vector<std::string> classes;  // root first, ending in its own; empty when not printed
  std::optional<std::uint32_t> state;
  plist_t children = nullptr;
  std::vector<PrintedProperty> properties;  // in the order of print
};

// Throws Refusal when `dictionary` isn't the print of an entry; `parent` (0 for the root) helps to
// say which.
EntryPrint readPrint(plist_t dictionary, EntryID parent);

// True for the keys that ioreg adds to an entry's properties: they are none.
bool isSyntheticKey(std::string_view key);

// "entry 0x..." for messages.
std::string entryText(EntryID id);

}  // namespace MemoryRegistry
