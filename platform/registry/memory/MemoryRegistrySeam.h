#pragma once

// What the system uses of IOKit and CoreFoundation, declared for the in-memory registry: the same
// names, types and constants as the operating system's. The functions have C++ linkage, so that
// they are no namesakes of the system's symbols.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/registry/memory/MemoryRegistryExport.h"

// ---- Types ------------------------------------------------------------------------------------

using boolean_t = int;
using kern_return_t = int;
using IOReturn = kern_return_t;
using IOOptionBits = std::uint32_t;
using mach_port_t = unsigned int;
using io_object_t = mach_port_t;
using io_registry_entry_t = io_object_t;
using io_service_t = io_object_t;
using io_iterator_t = io_object_t;
using io_name_t = char[128];
using io_string_t = char[512];

using Boolean = unsigned char;
using UInt8 = std::uint8_t;
using CFIndex = long;
using CFTypeID = unsigned long;
using CFOptionFlags = unsigned long;
using CFStringEncoding = std::uint32_t;
using CFTypeRef = const void*;
using CFAllocatorRef = const struct __CFAllocator*;
using CFBooleanRef = const struct __CFBoolean*;
using CFDataRef = const struct __CFData*;
using CFStringRef = const struct __CFString*;
using CFNumberRef = const struct __CFNumber*;
using CFArrayRef = const struct __CFArray*;
using CFDictionaryRef = const struct __CFDictionary*;
using CFMutableDictionaryRef = struct __CFDictionary*;
using CFNumberType = CFIndex;
using CFComparisonResult = CFIndex;
using CFStringCompareFlags = CFOptionFlags;

struct CFRange {
  CFIndex location;
  CFIndex length;
};
inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return CFRange{location, length}; }

struct CFArrayCallBacks;
struct CFDictionaryKeyCallBacks;
struct CFDictionaryValueCallBacks;

// ---- Constants --------------------------------------------------------------------------------

inline constexpr mach_port_t kIOMasterPortDefault = 0;

inline constexpr IOOptionBits kIORegistryIterateRecursively = 1;
inline constexpr IOOptionBits kIORegistryIterateParents = 2;

inline constexpr kern_return_t KERN_SUCCESS = 0;
inline constexpr kern_return_t KERN_INVALID_NAME = 15;
inline constexpr kern_return_t MACH_SEND_INVALID_DEST = 0x10000003;
inline constexpr IOReturn kIOReturnSuccess = 0;
inline constexpr IOReturn kIOReturnError = static_cast<IOReturn>(0xE00002BCU);
inline constexpr IOReturn kIOReturnNoResources = static_cast<IOReturn>(0xE00002BEU);
inline constexpr IOReturn kIOReturnNoDevice = static_cast<IOReturn>(0xE00002C0U);
inline constexpr IOReturn kIOReturnBadArgument = static_cast<IOReturn>(0xE00002C2U);
inline constexpr IOReturn kIOReturnNotFound = static_cast<IOReturn>(0xE00002F0U);

inline constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;
inline constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;
inline constexpr CFNumberType kCFNumberSInt32Type = 3;
inline constexpr CFNumberType kCFNumberSInt64Type = 4;
inline constexpr CFNumberType kCFNumberFloat64Type = 6;
inline constexpr CFNumberType kCFNumberIntType = 9;
inline constexpr CFNumberType kCFNumberLongLongType = 11;
inline constexpr CFComparisonResult kCFCompareLessThan = -1;
inline constexpr CFComparisonResult kCFCompareEqualTo = 0;
inline constexpr CFComparisonResult kCFCompareGreaterThan = 1;

// In a namespace, because the name of a global variable is its symbol, whatever its linkage.
namespace MemoryRegistry {
MEMORYREGISTRY_EXPORT extern const CFArrayCallBacks kCFTypeArrayCallBacks;
MEMORYREGISTRY_EXPORT extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
MEMORYREGISTRY_EXPORT extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
}  // namespace MemoryRegistry
using MemoryRegistry::kCFTypeArrayCallBacks;
using MemoryRegistry::kCFTypeDictionaryKeyCallBacks;
using MemoryRegistry::kCFTypeDictionaryValueCallBacks;

// ---- IOKit: finding entries -------------------------------------------------------------------

// The service with the lowest ID that matches the dictionary, with one reference, or 0. Always
// consumes one reference of `matching`. Only registered and matched services are found. Keys that
// restrict: IOProviderClass (subclasses included), IOPropertyMatch, IOPropertyExistsMatch,
// IONameMatch, IOLocationMatch, IOPathMatch, IORegistryEntryID, the keys "BSD Name", "BSD Major",
// "BSD Minor" and "BSD Unit", and for media those that IOMedia compares itself. Every other key is
// ignored, IOParentMatch among them.
MEMORYREGISTRY_EXPORT io_service_t IOServiceGetMatchingService(mach_port_t mainPort,
                                                               CFDictionaryRef matching);

// Every service that matches, as they are now, ascending by ID. Always consumes one reference of
// `matching`. No match is a success with iterator 0; null for `matching` is kIOReturnBadArgument.
MEMORYREGISTRY_EXPORT kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort,
                                                                 CFDictionaryRef matching,
                                                                 io_iterator_t* existing);

// The root of every plane, with one reference.
MEMORYREGISTRY_EXPORT io_registry_entry_t IORegistryGetRootEntry(mach_port_t mainPort);

// The entry at a path such as "IOService:/A/B@1", with one reference, or 0 when nothing is there
// (the empty path included).
MEMORYREGISTRY_EXPORT io_registry_entry_t IORegistryEntryFromPath(mach_port_t mainPort,
                                                                  const char* path);

// The first parent or child in the plane, with one reference; kIOReturnNoDevice and 0 when there is
// none.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry,
                                                                  const char* plane,
                                                                  io_registry_entry_t* parent);
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetChildEntry(io_registry_entry_t entry,
                                                                 const char* plane,
                                                                 io_registry_entry_t* child);

// ---- IOKit: walks -----------------------------------------------------------------------------

// A walk below the entry, or above it with kIORegistryIterateParents; the entry itself is left out.
// Recursive walks go depth first, return an entry at every encounter and descend into it at the
// first. The walk is live: it ends when the links under it change.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryCreateIterator(io_registry_entry_t entry,
                                                                  const char* plane,
                                                                  IOOptionBits options,
                                                                  io_iterator_t* iterator);

// The same, below the root of the registry.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryCreateIterator(mach_port_t mainPort,
                                                             const char* plane,
                                                             IOOptionBits options,
                                                             io_iterator_t* iterator);

// The direct children, as they are now. An unknown plane is a success with iterator 0.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry,
                                                                    const char* plane,
                                                                    io_iterator_t* iterator);

// The same for the parents, in the order in which the entry was attached to them.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetParentIterator(io_registry_entry_t entry,
                                                                     const char* plane,
                                                                     io_iterator_t* iterator);

// The next entry, with one reference; 0 at the end, which is not to say that the walk was complete.
MEMORYREGISTRY_EXPORT io_object_t IOIteratorNext(io_iterator_t iterator);

// False when the registry has changed under a live walk: reset it and start over.
MEMORYREGISTRY_EXPORT boolean_t IOIteratorIsValid(io_iterator_t iterator);
MEMORYREGISTRY_EXPORT void IOIteratorReset(io_iterator_t iterator);

// ---- IOKit: looking at an entry ---------------------------------------------------------------

namespace MemoryRegistry {
MEMORYREGISTRY_EXPORT boolean_t conformsTo(io_object_t object, const char* className,
                                           std::size_t length);
}

// Non-zero when the entry is of the class or of one derived from it. Inline, because compilers know
// the length of a literal.
inline boolean_t IOObjectConformsTo(io_object_t object, const char* className) {
  const std::size_t length = className != nullptr ? std::strlen(className) : 0;
  return MemoryRegistry::conformsTo(object, className, length);
}

// The name of the entry's class into an io_name_t, or what its property IOClassNameOverride says.
MEMORYREGISTRY_EXPORT kern_return_t IOObjectGetClass(io_object_t object, char* className);

// The class that another is derived from, as the entries that there are tell it; null for a class
// that derives from nothing, or that no entry is of or derived from.
MEMORYREGISTRY_EXPORT CFStringRef IOObjectCopySuperclassForClass(CFStringRef className);

// The number that the entry keeps for as long as it lives, and that no other one ever gets.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetRegistryEntryID(io_registry_entry_t entry,
                                                                      std::uint64_t* id);

// The name into an io_name_t, cut off at 127 bytes; the same in any plane.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetNameInPlane(io_registry_entry_t entry,
                                                                  const char* plane, char* name);

// The path through first parents into an io_string_t: at most 509 characters, else
// kIOReturnBadArgument.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetPath(io_registry_entry_t entry,
                                                           const char* plane, char* path);

// The text behind the "@" into an io_name_t; kIOReturnNotFound, and the buffer untouched, when
// there is none.
MEMORYREGISTRY_EXPORT kern_return_t IORegistryEntryGetLocationInPlane(io_registry_entry_t entry,
                                                                      const char* plane,
                                                                      char* location);

// A fresh copy of a property, or null when there is none.
MEMORYREGISTRY_EXPORT CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry,
                                                                CFStringRef key,
                                                                CFAllocatorRef allocator,
                                                                IOOptionBits options);

// Fresh copies of all properties, in a dictionary that is empty when there are none.
MEMORYREGISTRY_EXPORT kern_return_t
IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                  CFAllocatorRef allocator, IOOptionBits options);

// ---- IOKit: references ------------------------------------------------------------------------

// Both succeed on 0 and on the handle of a terminated entry.
MEMORYREGISTRY_EXPORT kern_return_t IOObjectRetain(io_object_t object);
MEMORYREGISTRY_EXPORT kern_return_t IOObjectRelease(io_object_t object);

// ---- CoreFoundation ---------------------------------------------------------------------------

MEMORYREGISTRY_EXPORT CFTypeRef CFRetain(CFTypeRef value);
MEMORYREGISTRY_EXPORT void CFRelease(CFTypeRef value);
MEMORYREGISTRY_EXPORT CFTypeID CFGetTypeID(CFTypeRef value);

MEMORYREGISTRY_EXPORT CFTypeID CFBooleanGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFDataGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFStringGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFNumberGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFArrayGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFDictionaryGetTypeID();

// A compile-time constant string: never released, the same object for the same text.
#define CFSTR(literal) __CFStringMakeConstantString("" literal "")
MEMORYREGISTRY_EXPORT CFStringRef __CFStringMakeConstantString(const char* text);

MEMORYREGISTRY_EXPORT CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator,
                                                            const char* text,
                                                            CFStringEncoding encoding);
// In UTF-16 code units.
MEMORYREGISTRY_EXPORT CFIndex CFStringGetLength(CFStringRef string);
MEMORYREGISTRY_EXPORT CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length,
                                                                CFStringEncoding encoding);
// Converts `range` into `buffer`; returns how many code units were converted, and how many bytes
// that took in `used` (may be null, as `buffer` may).
MEMORYREGISTRY_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range,
                                               CFStringEncoding encoding, UInt8 lossByte,
                                               Boolean isExternal, UInt8* buffer, CFIndex capacity,
                                               CFIndex* used);
MEMORYREGISTRY_EXPORT CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b,
                                                         CFStringCompareFlags options);
MEMORYREGISTRY_EXPORT Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix);
MEMORYREGISTRY_EXPORT CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef allocator,
                                                                        CFStringRef string,
                                                                        CFStringRef separator);

MEMORYREGISTRY_EXPORT CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type,
                                                 const void* value);
// False when the number does not fit; the truncated value is written all the same.
MEMORYREGISTRY_EXPORT Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

MEMORYREGISTRY_EXPORT Boolean CFNumberIsFloatType(CFNumberRef number);

MEMORYREGISTRY_EXPORT Boolean CFBooleanGetValue(CFBooleanRef boolean);

MEMORYREGISTRY_EXPORT CFIndex CFDataGetLength(CFDataRef data);
// Borrowed; may be null when there are none.
MEMORYREGISTRY_EXPORT const UInt8* CFDataGetBytePtr(CFDataRef data);

MEMORYREGISTRY_EXPORT CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values,
                                               CFIndex count, const CFArrayCallBacks* callBacks);
MEMORYREGISTRY_EXPORT CFIndex CFArrayGetCount(CFArrayRef array);
MEMORYREGISTRY_EXPORT const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

MEMORYREGISTRY_EXPORT CFMutableDictionaryRef CFDictionaryCreateMutable(
    CFAllocatorRef allocator, CFIndex capacity, const CFDictionaryKeyCallBacks* keyCallBacks,
    const CFDictionaryValueCallBacks* valueCallBacks);
MEMORYREGISTRY_EXPORT void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key,
                                                const void* value);
MEMORYREGISTRY_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
MEMORYREGISTRY_EXPORT CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
// Borrowed, in no order; either may be null.
MEMORYREGISTRY_EXPORT void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary,
                                                        const void** keys, const void** values);
