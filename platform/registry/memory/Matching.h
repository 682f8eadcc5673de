#pragma once

#include <vector>

#include "platform/registry/memory/MemoryRegistrySeam.h"

namespace MemoryRegistry {

struct Entry;
class Graph;

// The matching service with the lowest ID; null when there is none.
Entry* findService(Graph& graph, const __CFDictionary& matching);

// Every matching service, ascending by ID.
std::vector<Entry*> findServices(Graph& graph, const __CFDictionary& matching);

}  // namespace MemoryRegistry
