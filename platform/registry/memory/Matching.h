#pragma once

#include "platform/registry/memory/MemoryRegistrySeam.h"

namespace MemoryRegistry {

struct Entry;
class Graph;

// The matching service with the lowest ID; null when there is none.
Entry* findService(Graph& graph, const __CFDictionary& matching);

}  // namespace MemoryRegistry
