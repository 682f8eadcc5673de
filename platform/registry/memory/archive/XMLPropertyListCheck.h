#pragma once

#include <cstddef>
#include <cstdint>

namespace MemoryRegistry {

// Throws Refusal unless libplist can be trusted with the XML property list: well formed, nothing in
// it that libplist would drop or misread in silence, and bounded in nesting, time, and the memory
// that reading it takes. Stricter than XML where nobody writes property lists so.
void checkXMLPropertyList(const char* data, std::size_t size, std::uint64_t memoryLimit);

}  // namespace MemoryRegistry
