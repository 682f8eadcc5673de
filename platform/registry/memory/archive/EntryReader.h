#pragma once

#include <plist/plist.h>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// The entries that a property list prints. Throws Refusal when it isn't an archive.
RegistryContent readEntries(plist_t top);

}  // namespace MemoryRegistry
