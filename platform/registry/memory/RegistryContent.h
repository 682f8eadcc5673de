#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry/memory/PropertyValue.h"

namespace MemoryRegistry {

using EntryID = std::uint64_t;  // never 0, never reused

// The state of a service, as bits.
enum ServiceState : std::uint32_t {
  Inactive = 0x01,
  Registered = 0x02,
  Matched = 0x04,
  FirstPublish = 0x08,
  FirstMatch = 0x10,
  Settled = Registered | Matched | FirstPublish | FirstMatch,
};

// One entry, as it is to be.
struct EntryDescription {
  std::string className;                 // must not be empty
  std::optional<std::string> name;       // none: the class's name
  std::string location;                  // empty: none
  std::vector<std::string> inheritance;  // root first, ending in the class itself; empty: looked up
  std::optional<std::uint32_t> state;    // ServiceState bits; none: as a service that is settled
  Dictionary properties;
};

// The whole of a registry: a graph of entries with ordered children and ordered parents.
struct RegistryContent {
  struct Entry {
    EntryID id = 0;
    EntryDescription description;
    std::vector<std::size_t> children;  // places in `entries`, in order, each once
    std::vector<std::size_t> parents;   // places in `entries`, in order of attachment
  };
  std::vector<Entry> entries;  // the first is the root; every other has a parent; no cycle
};

}  // namespace MemoryRegistry
