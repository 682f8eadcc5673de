#pragma once

#include "platform/registry/memory/PropertyValue.h"
#include "platform/registry/memory/archive/EntryPrint.h"

namespace MemoryRegistry {

// The properties of a print, in its order; of those with one key the last. Throws Refusal on values
// nested too deeply. Takes the keys out of the print.
Dictionary readProperties(EntryPrint& print);

}  // namespace MemoryRegistry
