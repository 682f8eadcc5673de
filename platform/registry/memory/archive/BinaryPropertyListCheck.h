#pragma once

#include <cstddef>
#include <cstdint>

namespace MemoryRegistry {

// Throws Refusal unless libplist can be trusted with the binary property list: every offset and
// length within the file, no object within itself, only kinds of objects that it reads as what they
// are, and bounded in nesting, time, and the memory that reading it takes. libplist copies an
// object for each reference to it, so a small file may stand for an enormous list.
void checkBinaryPropertyList(const char* data, std::size_t size, std::uint64_t memoryLimit);

}  // namespace MemoryRegistry
