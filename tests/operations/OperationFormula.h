#pragma once

#include <array>
#include <cstdint>

#include "platform/registry/memory/Operation.h"
#include "tests/operations/GeneratedRegistry.h"

namespace TestSupport {

// How often each operation of the seam is called, by the operation's number.
using OperationCounts = std::array<std::uint64_t, MemoryRegistry::OperationCount>;

// The calls of the seam up to now.
OperationCounts countedOperations();

// The operations of one refresh of a device that is on file, with its sets and members, as
// docs/performance.md derives them: from the order of the walk beneath the bridge, and from nothing
// that the library does.
OperationCounts operationsOfRefresh(const GeneratedEnclosure& enclosure);

}  // namespace TestSupport
