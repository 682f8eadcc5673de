#pragma once

#include <cstddef>

namespace MemoryRegistry {

// Throws Refusal unless libplist can be trusted with the XML property list: well formed, nothing in
// it that libplist would drop or misread in silence, and bounded in nesting, memory and time.
// Stricter than XML where nobody writes property lists so.
void checkXMLPropertyList(const char* data, std::size_t size);

}  // namespace MemoryRegistry
