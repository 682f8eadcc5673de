#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace MemoryRegistry {

inline constexpr std::size_t largestArchive = std::size_t{512} << 20U;

// Entries on the way from the root to any other, both counted; and containers within a property.
inline constexpr std::size_t deepestEntry = 1000;
inline constexpr std::size_t deepestValue = 1000;

// Dictionaries and arrays on the way from the top: each entry is a dictionary in an array, and the
// last one may have the deepest value. Keeps libplist, which recurses, within any ordinary stack.
inline constexpr std::size_t deepestContainer = 2 * deepestEntry + deepestValue;

// What libplist's tree and ours take in memory for each node, with the allocator's share. Measured
// with libplist 2.2.0 and rounded up.
inline constexpr std::uint64_t scalarCost = 96 + 16 + 40;
inline constexpr std::uint64_t textCost = scalarCost + 32;
inline constexpr std::uint64_t keyCost = 96 + 64;
inline constexpr std::uint64_t containerCost = scalarCost + 64;

// What an archive may take altogether, by its size as a file, packed or not. Small ones may take
// more than twenty times their size: a binary list that names each value once honestly does.
inline std::uint64_t memoryLimit(std::size_t size) {
  return std::max<std::uint64_t>(std::uint64_t{20} * size, std::uint64_t{160} << 20U);
}

}  // namespace MemoryRegistry
