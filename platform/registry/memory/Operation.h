#pragma once

#include <cstddef>

namespace MemoryRegistry {

// The operations of the seam that are counted. Those before `CFRetain` can be made to fail; the
// others have no way to say so.
enum class Operation : unsigned {
  IOServiceGetMatchingService,
  IORegistryEntryFromPath,
  IORegistryEntryGetParentEntry,
  IORegistryEntryGetChildEntry,
  IORegistryEntryCreateIterator,
  IORegistryCreateIterator,
  IORegistryEntryGetChildIterator,
  IOIteratorNext,
  IOIteratorIsValid,
  IOObjectConformsTo,
  IORegistryEntryGetPath,
  IORegistryEntryGetLocationInPlane,
  IORegistryEntryCreateCFProperty,
  CFStringCreateWithCString,
  CFStringCreateArrayBySeparatingStrings,
  CFNumberCreate,
  CFNumberGetValue,
  CFArrayCreate,
  CFDictionaryCreateMutable,
  CFDictionaryGetValue,
  CFStringGetBytes,
  // From here on: counted, never failing.
  CFRetain,
  CFRelease,
  CFGetTypeID,
  CFStringGetLength,
  CFStringCompare,
  CFStringHasPrefix,
  CFArrayGetCount,
  CFArrayGetValueAtIndex,
  CFDictionarySetValue,
  IOObjectRetain,
  IOObjectRelease,
  IOIteratorReset,
};

inline constexpr std::size_t OperationCount =
    static_cast<std::size_t>(Operation::IOIteratorReset) + 1;
inline constexpr bool canFail(Operation operation) { return operation < Operation::CFRetain; }

}  // namespace MemoryRegistry
