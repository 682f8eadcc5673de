#pragma once

#include "platform/registry/memory/MemoryRegistrySeam.h"
#include "platform/registry/memory/PropertyValue.h"

namespace MemoryRegistry {

// Whether a property is what a matching dictionary asks for, by the rules of the kernel: numbers by
// their value without regard to width, a string also equal to data with its bytes.
bool matches(const PropertyValue& property, CFTypeRef sought);

}  // namespace MemoryRegistry
