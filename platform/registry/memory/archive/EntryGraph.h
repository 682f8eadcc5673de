#pragma once

#include <cstddef>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// Appends the link on both sides, unless it is there.
void link(RegistryContent& content, std::size_t parent, std::size_t child);

// Prints that are merged may close a circle, or a way longer than any print showed: throws Refusal
// on an entry beneath itself and on one deeper than deepestEntry.
void checkGraph(const RegistryContent& content);

}  // namespace MemoryRegistry
