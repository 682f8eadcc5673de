#pragma once

#include <cstdint>
#include <vector>

#include "platform/registry/memory/ClassTable.h"
#include "platform/registry/memory/RegistryContent.h"
#include "platform/registry/memory/Symbol.h"

namespace MemoryRegistry {

struct Property {
  Symbol key = nullptr;
  PropertyValue value;
};

// All of an entry but its links.
struct EntryFacts {
  ClassInfo* classInfo = nullptr;
  Symbol name = nullptr;
  Symbol location = nullptr;         // null: none
  std::vector<Property> properties;  // ascending by the key's address, each key once
  std::uint32_t state = 0;
  bool hasState = false;
  std::uint32_t overridingClass = NoClassNumber;  // of the property IOClassNameOverride

  const PropertyValue* property(Symbol key) const;
};

// Throws std::invalid_argument for a description that is not what EntryDescription says.
EntryFacts factsOf(EntryDescription description);

// Property by property, so that nothing is left half done when memory runs out.
void storeProperty(EntryFacts& facts, Symbol key, PropertyValue value);
void eraseProperty(EntryFacts& facts, Symbol key);

// The children or the parents of an entry, in order.
struct Links {
  std::vector<struct Entry*> entries;
  std::uint64_t stamp = 0;  // one that no other state of any links has had
};

struct Entry {
  EntryID id = 0;
  std::uint64_t birth = 0;  // one that no other entry has had
  std::uint32_t handle = 0;
  Links children;
  Links parents;
  EntryFacts facts;
  Entry* nextOfClass = nullptr;
  Entry* previousOfClass = nullptr;
};

void enterClass(Entry& entry);
void leaveClass(Entry& entry);

}  // namespace MemoryRegistry
