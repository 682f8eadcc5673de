#pragma once

#include <functional>

#include "platform/registry/memory/RegistryContent.h"

// For RapidCheck: call them within a property.

// With the width that an archive gives it back.
MemoryRegistry::Number randomNumber();

// Entries in the order in which a writer that goes depth first meets them, some with parents beside
// the first; the description of each is asked for, the root's first.
MemoryRegistry::RegistryContent randomContent(
    const std::function<MemoryRegistry::EntryDescription()>& describe);
