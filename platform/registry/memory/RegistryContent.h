#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry/memory/PropertyValue.h"

namespace MemoryRegistry {

// The number that an entry has for life: never 0, and never another entry's.
using EntryID = std::uint64_t;

// The state of a service, as bits.
enum ServiceState : std::uint32_t {
  Inactive = 0x01,      // terminated
  Registered = 0x02,    // offered to matching
  Matched = 0x04,       // matching is through with it
  FirstPublish = 0x08,  // announced for the first time
  FirstMatch = 0x10,    // matched for the first time
  Settled = Registered | Matched | FirstPublish | FirstMatch,
};

// One entry, as it is to be.
//
// Ownership: a plain value; copies are deep.
// Thread:    any; two threads that share one object look to that themselves.
// Failure:   nothing here is checked: the registry does that when it is given it.
//
// \code
// #include "platform/registry/memory/MemoryRegistry.h"
//
// // A switch beneath `bus`, of five bays if it is one of an enclosure's; with its new ID.
// MemoryRegistry::EntryID addSwitch(MemoryRegistry::EntryID bus, std::uint64_t uid) {
//   MemoryRegistry::EntryDescription description;
//   description.className = "IOThunderboltSwitchType2";
//   description.properties = {{"UID", MemoryRegistry::number64(uid)},
//                             {"Depth", 1},
//                             {"Device Vendor Name", "Example Storage"}};
//   return MemoryRegistry::add(bus, description);
// }
// \endcode
struct EntryDescription {
  std::string className;                 // must not be empty
  std::optional<std::string> name;       // none: the class's name
  std::string location;                  // empty: none
  std::vector<std::string> inheritance;  // root first, ending in the class itself; empty: looked up
  std::optional<std::uint32_t> state;    // ServiceState bits; none: as a service that is settled
  Dictionary properties;                 // by their keys
};

// The whole of a registry: a graph of entries with ordered children and ordered parents. Ownership,
// thread and failure as for one entry.
//
// \code
// #include "platform/registry/memory/MemoryRegistry.h"
//
// // A root with one service beneath it; the whole registry becomes that.
// int main() {
//   MemoryRegistry::RegistryContent content;
//   content.entries.resize(2);
//   content.entries[0].id = 1;
//   content.entries[0].description.className = "IORegistryEntry";
//   content.entries[0].children = {1};  // places in `entries`; each link stands at both its ends
//   content.entries[1].id = 2;
//   content.entries[1].description.className = "IOPlatformExpertDevice";
//   content.entries[1].parents = {0};
//   MemoryRegistry::replaceContent(content);
//   return MemoryRegistry::children(1) == std::vector<MemoryRegistry::EntryID>{2} ? 0 : 1;
// }
// \endcode
struct RegistryContent {
  // An entry and its links.
  struct Entry {
    EntryID id = 0;                     // another for each
    EntryDescription description;       // what it is
    std::vector<std::size_t> children;  // places in `entries`, in order, each once
    std::vector<std::size_t> parents;   // places in `entries`, in order of attachment
  };
  std::vector<Entry> entries;  // the first is the root; every other has a parent; no cycle
};

}  // namespace MemoryRegistry
