#pragma once

// What the system uses of IOKit, declared for the in-memory registry: the same names, types and
// constants as the operating system's. The functions have C++ linkage, so that they are no
// namesakes of the system's symbols. What holds for all of them (handles, values, failure, thread)
// stands in platform/registry/Registry.h, which is the header to include.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/registry/memory/CoreFoundationSeam.h"
#include "platform/registry/memory/MemoryRegistryExport.h"

// ---- Types ------------------------------------------------------------------------------------

// Truth: 0 is false.
using boolean_t = int;

// How an operation ended: 0 is success, all else an error.
using kern_return_t = int;
using IOReturn = kern_return_t;

// Bits that say how an operation shall go about it; those that are not known are ignored.
using IOOptionBits = std::uint32_t;

// Handles: 0 is none. One of an entry may be used as any of the first three.
using mach_port_t = unsigned int;
using io_object_t = mach_port_t;
using io_registry_entry_t = io_object_t;
using io_service_t = io_object_t;
using io_iterator_t = io_object_t;

// Buffers for a name and for a path, the terminating 0 included.
using io_name_t = char[128];
using io_string_t = char[512];

// ---- Constants --------------------------------------------------------------------------------

// The port that look-ups are made at; 0 does as well (RAIDMonitoring::registryPort).
inline constexpr mach_port_t kIOMasterPortDefault = 0;

// How a walk goes: into what it meets, and upwards.
inline constexpr IOOptionBits kIORegistryIterateRecursively = 1;
inline constexpr IOOptionBits kIORegistryIterateParents = 2;

// How operations end. Which error means what, each operation says.
inline constexpr kern_return_t KERN_SUCCESS = 0;
inline constexpr kern_return_t KERN_INVALID_NAME = 15;
inline constexpr kern_return_t MACH_SEND_INVALID_DEST = 0x10000003;
inline constexpr IOReturn kIOReturnSuccess = 0;
inline constexpr IOReturn kIOReturnError = static_cast<IOReturn>(0xE00002BCU);
inline constexpr IOReturn kIOReturnNoResources = static_cast<IOReturn>(0xE00002BEU);
inline constexpr IOReturn kIOReturnNoDevice = static_cast<IOReturn>(0xE00002C0U);
inline constexpr IOReturn kIOReturnBadArgument = static_cast<IOReturn>(0xE00002C2U);
inline constexpr IOReturn kIOReturnNotFound = static_cast<IOReturn>(0xE00002F0U);

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
// IOObjectConformsTo, of a name that is `length` bytes long.
MEMORYREGISTRY_EXPORT boolean_t conformsTo(io_object_t object, const char* className,
                                           std::size_t length);
}  // namespace MemoryRegistry

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
