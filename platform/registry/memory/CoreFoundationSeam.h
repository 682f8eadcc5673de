#pragma once

// What the system uses of CoreFoundation, declared for the in-memory registry: the same names,
// types and constants as the operating system's, with C++ linkage. What holds for all of them
// stands in platform/registry/Registry.h, which is the header to include.

#include <cstdint>

#include "platform/registry/memory/MemoryRegistryExport.h"

// ---- Types ------------------------------------------------------------------------------------

// Truth: 0 is false.
using Boolean = unsigned char;

// A byte.
using UInt8 = std::uint8_t;

// A count, or a place counted from 0.
using CFIndex = long;

// Tells a value's type: the same for all values of one type.
using CFTypeID = unsigned long;

// Which bytes a text is made of. UTF-8 is the one that is known.
using CFStringEncoding = std::uint32_t;

// Values, counted by references; the first may be of any type. Null is none.
using CFTypeRef = const void*;
using CFAllocatorRef = const struct __CFAllocator*;
using CFBooleanRef = const struct __CFBoolean*;
using CFDataRef = const struct __CFData*;
using CFStringRef = const struct __CFString*;
using CFNumberRef = const struct __CFNumber*;
using CFArrayRef = const struct __CFArray*;
using CFDictionaryRef = const struct __CFDictionary*;
using CFMutableDictionaryRef = struct __CFDictionary*;

// Bits that say how texts are to be compared; none is known.
using CFOptionFlags = unsigned long;
using CFStringCompareFlags = CFOptionFlags;

// As what a number is given or wanted, and how two texts compare: see the constants.
using CFNumberType = CFIndex;
using CFComparisonResult = CFIndex;

// A stretch of a text, in UTF-16 code units.
struct CFRange {
  CFIndex location;  // where it begins
  CFIndex length;    // how many they are
};
// The same in one expression.
inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return CFRange{location, length}; }

struct CFArrayCallBacks;
struct CFDictionaryKeyCallBacks;
struct CFDictionaryValueCallBacks;

// ---- Constants --------------------------------------------------------------------------------

// The allocator, of which there is but one, and the encoding.
inline constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;
inline constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

// As what a number is given or wanted: std::int32_t, std::int64_t, double, int, long long.
inline constexpr CFNumberType kCFNumberSInt32Type = 3;
inline constexpr CFNumberType kCFNumberSInt64Type = 4;
inline constexpr CFNumberType kCFNumberFloat64Type = 6;
inline constexpr CFNumberType kCFNumberIntType = 9;
inline constexpr CFNumberType kCFNumberLongLongType = 11;

// How the first of two texts stands to the second.
inline constexpr CFComparisonResult kCFCompareLessThan = -1;
inline constexpr CFComparisonResult kCFCompareEqualTo = 0;
inline constexpr CFComparisonResult kCFCompareGreaterThan = 1;

// In a namespace, because the name of a global variable is its symbol, whatever its linkage.
namespace MemoryRegistry {
// What arrays and dictionaries of CoreFoundation values are made with: they retain what they hold.
MEMORYREGISTRY_EXPORT extern const CFArrayCallBacks kCFTypeArrayCallBacks;
MEMORYREGISTRY_EXPORT extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
MEMORYREGISTRY_EXPORT extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
}  // namespace MemoryRegistry
using MemoryRegistry::kCFTypeArrayCallBacks;
using MemoryRegistry::kCFTypeDictionaryKeyCallBacks;
using MemoryRegistry::kCFTypeDictionaryValueCallBacks;

// ---- Functions ---------------------------------------------------------------------------------

// Takes a reference, and gives one back; the value ends with its last. Null traps.
MEMORYREGISTRY_EXPORT CFTypeRef CFRetain(CFTypeRef value);
MEMORYREGISTRY_EXPORT void CFRelease(CFTypeRef value);

// The type of a value, to compare with those below. Null traps.
MEMORYREGISTRY_EXPORT CFTypeID CFGetTypeID(CFTypeRef value);

// The types.
MEMORYREGISTRY_EXPORT CFTypeID CFBooleanGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFDataGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFStringGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFNumberGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFArrayGetTypeID();
MEMORYREGISTRY_EXPORT CFTypeID CFDictionaryGetTypeID();

// A compile-time constant string: never released, the same object for the same text.
#define CFSTR(literal) __CFStringMakeConstantString("" literal "")
// What CFSTR stands for.
MEMORYREGISTRY_EXPORT CFStringRef __CFStringMakeConstantString(const char* text);

// A text of these bytes; null when they are not well-formed.
MEMORYREGISTRY_EXPORT CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator,
                                                            const char* text,
                                                            CFStringEncoding encoding);
// In UTF-16 code units.
MEMORYREGISTRY_EXPORT CFIndex CFStringGetLength(CFStringRef string);

// How many bytes a text of so many code units may need.
MEMORYREGISTRY_EXPORT CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length,
                                                                CFStringEncoding encoding);
// Converts `range` into `buffer`; returns how many code units were converted, and how many bytes
// that took in `used` (may be null, as `buffer` may).
MEMORYREGISTRY_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range,
                                               CFStringEncoding encoding, UInt8 lossByte,
                                               Boolean isExternal, UInt8* buffer, CFIndex capacity,
                                               CFIndex* used);

// Code unit by code unit; no option is known.
MEMORYREGISTRY_EXPORT CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b,
                                                         CFStringCompareFlags options);

// Whether the text begins with the other one; with the empty one no text does.
MEMORYREGISTRY_EXPORT Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix);

// What stands before, between and behind the separators: one text more than there are of them.
MEMORYREGISTRY_EXPORT CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef allocator,
                                                                        CFStringRef string,
                                                                        CFStringRef separator);

// A number of the type that `value` points to.
MEMORYREGISTRY_EXPORT CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType type,
                                                 const void* value);
// False when the number does not fit; the truncated value is written all the same.
MEMORYREGISTRY_EXPORT Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

// Whether the number is a real one.
MEMORYREGISTRY_EXPORT Boolean CFNumberIsFloatType(CFNumberRef number);

// What it says.
MEMORYREGISTRY_EXPORT Boolean CFBooleanGetValue(CFBooleanRef boolean);

// How many bytes they are.
MEMORYREGISTRY_EXPORT CFIndex CFDataGetLength(CFDataRef data);
// Borrowed; may be null when there are none.
MEMORYREGISTRY_EXPORT const UInt8* CFDataGetBytePtr(CFDataRef data);

// An array of `count` values. It takes a reference on each, unless the callbacks are null.
MEMORYREGISTRY_EXPORT CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values,
                                               CFIndex count, const CFArrayCallBacks* callBacks);
// How many values it has.
MEMORYREGISTRY_EXPORT CFIndex CFArrayGetCount(CFArrayRef array);

// Borrowed. A place beyond the last traps.
MEMORYREGISTRY_EXPORT const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);

// An empty dictionary, which takes any number of values whatever the capacity; of keys or values
// whose callbacks are null it will hold no references.
MEMORYREGISTRY_EXPORT CFMutableDictionaryRef CFDictionaryCreateMutable(
    CFAllocatorRef allocator, CFIndex capacity, const CFDictionaryKeyCallBacks* keyCallBacks,
    const CFDictionaryValueCallBacks* valueCallBacks);

// Stores the value under the key, in place of one that is there.
MEMORYREGISTRY_EXPORT void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key,
                                                const void* value);

// Borrowed; null when there is none.
MEMORYREGISTRY_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

// How many keys it has.
MEMORYREGISTRY_EXPORT CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
// Borrowed, in no order; either may be null.
MEMORYREGISTRY_EXPORT void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary,
                                                        const void** keys, const void** values);
