#pragma once

#include <cstdint>

#include "platform/registry/memory/CFObjects.h"

namespace MemoryRegistry {

// A number as an integer: cut off at its point, and at the limits of 64 bits.
struct Whole {
  std::int64_t value;
  bool exact;  // nothing was cut off
};

Whole wholeOf(const __CFNumber& number);

Owned<__CFNumber> makeInteger(std::int64_t value, CFNumberType type);
Owned<__CFNumber> makeReal(double value);

}  // namespace MemoryRegistry
