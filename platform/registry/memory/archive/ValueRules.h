#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/registry/memory/PropertyValue.h"

// What holds for the values of properties in every kind of archive.
namespace MemoryRegistry {

// An archive keeps no widths. Most of the registry's small numbers have 32 bits.
inline Number numberOfUnknownWidth(std::uint64_t bits) {
  return Number{bits, bits <= 0x7FFFFFFFU ? 32U : 64U};
}

// Of items with one key the last one counts. ioreg sorts the keys of a property list, so this is
// for its texts and for other writers.
void keepLastOfEachKey(Dictionary& dictionary);

// Throws Refusal when a container is nested deeper than deepestValue within its property.
void checkValueDepth(std::size_t depth);

}  // namespace MemoryRegistry
