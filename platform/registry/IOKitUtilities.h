#pragma once

#include <cstdint>
#include <string>

#include "platform/registry/Registry.h"

// Properties of registry entries as values of the language. Written once, on top of the seam.
//
// Ownership: every result is the caller's own.
// Thread:    that of the registry's caller.
// Failure:   never an error; what is missing or of another type has the neutral answer stated.
namespace IOKitUtilities {

// UTF-8. Missing, or not a string: empty.
std::string GetServiceStringProperty(unsigned int entry, std::string key);

// Missing, not a number (a boolean is none), not whole, or not a signed 32-bit value: -1.
std::int32_t GetServiceIntProperty(unsigned int entry, std::string key);

// Missing, not a number or not whole: 0. A negative number: its 64 bits.
std::uint64_t GetServiceUInt64Property(unsigned int entry, std::string key);

// With one reference for the caller, never null but for lack of memory. Missing, or not an array:
// an empty array.
CFArrayRef GetServiceArrayProperty(unsigned int entry, std::string key);

// UTF-8. Null, or not a string: empty.
std::string GetStringFromCFString(const struct __CFString* string);

}  // namespace IOKitUtilities
