#pragma once

#include <cstddef>

namespace MemoryRegistry {

// The operations of the seam that are counted, by their own names. Those before `CFRetain` can be
// made to fail; the others have no way to say so.
enum class Operation : unsigned {
  IOServiceGetMatchingService,
  IOServiceGetMatchingServices,
  IORegistryGetRootEntry,
  IORegistryEntryFromPath,
  IORegistryEntryGetParentEntry,
  IORegistryEntryGetChildEntry,
  IORegistryEntryCreateIterator,
  IORegistryCreateIterator,
  IORegistryEntryGetChildIterator,
  IORegistryEntryGetParentIterator,
  IOIteratorNext,
  IOIteratorIsValid,
  IOObjectConformsTo,
  IOObjectGetClass,
  IOObjectCopySuperclassForClass,
  IORegistryEntryGetRegistryEntryID,
  IORegistryEntryGetNameInPlane,
  IORegistryEntryGetPath,
  IORegistryEntryGetLocationInPlane,
  IORegistryEntryCreateCFProperty,
  IORegistryEntryCreateCFProperties,
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
  CFNumberIsFloatType,
  CFBooleanGetValue,
  CFDataGetLength,
  CFDataGetBytePtr,
  CFArrayGetCount,
  CFArrayGetValueAtIndex,
  CFDictionarySetValue,
  CFDictionaryGetCount,
  CFDictionaryGetKeysAndValues,
  IOObjectRetain,
  IOObjectRelease,
  IOIteratorReset,
};

// How many there are, for tables with a place for each.
inline constexpr std::size_t OperationCount =
    static_cast<std::size_t>(Operation::IOIteratorReset) + 1;

// Whether an order to fail can be meant for the operation.
inline constexpr bool canFail(Operation operation) { return operation < Operation::CFRetain; }

}  // namespace MemoryRegistry
