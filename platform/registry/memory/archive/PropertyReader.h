#pragma once

#include <plist/plist.h>

#include "platform/registry/memory/PropertyValue.h"

namespace MemoryRegistry {

// The properties in the dictionary that prints an entry: all but the synthetic keys, in the order
// of print. Throws Refusal on values nested too deeply.
Dictionary readProperties(plist_t entry);

}  // namespace MemoryRegistry
