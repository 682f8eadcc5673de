#pragma once

#include <AvailabilityMacros.h>
#include <stdint.h>
// By its place, since nothing but platform/registry/ includes a header of the system.
#include "../CoreFoundation/CoreFoundation.h"

typedef unsigned int mach_port_t;
// Unsigned on one architecture, signed on the other.
#if defined(FAKE_UNSIGNED_BOOLEAN)
typedef unsigned int boolean_t;
#else
typedef int boolean_t;
#endif
typedef int kern_return_t;
typedef kern_return_t IOReturn;
typedef UInt32 IOOptionBits;
typedef mach_port_t io_object_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef io_object_t io_iterator_t;
typedef char io_name_t[128];
typedef char io_string_t[512];

#define KERN_SUCCESS 0
#define kIOReturnSuccess KERN_SUCCESS
#define kIOReturnNotFound ((IOReturn)0xe00002f0)

enum { kIORegistryIterateRecursively = 0x00000001, kIORegistryIterateParents = 0x00000002 };

extern "C" {
#if MAC_OS_X_VERSION_MIN_REQUIRED >= 120000
extern const mach_port_t kIOMainPortDefault;
extern const mach_port_t kIOMasterPortDefault __attribute__((deprecated));
#else
extern const mach_port_t kIOMasterPortDefault;
#endif

io_service_t IOServiceGetMatchingService(mach_port_t mainPort, CFDictionaryRef matching);
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching,
                                           io_iterator_t* existing);
io_registry_entry_t IORegistryGetRootEntry(mach_port_t mainPort);
io_registry_entry_t IORegistryEntryFromPath(mach_port_t mainPort, const io_string_t path);
kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const io_name_t plane,
                                            io_registry_entry_t* parent);
kern_return_t IORegistryEntryGetChildEntry(io_registry_entry_t entry, const io_name_t plane,
                                           io_registry_entry_t* child);
kern_return_t IORegistryEntryCreateIterator(io_registry_entry_t entry, const io_name_t plane,
                                            IOOptionBits options, io_iterator_t* iterator);
kern_return_t IORegistryCreateIterator(mach_port_t mainPort, const io_name_t plane,
                                       IOOptionBits options, io_iterator_t* iterator);
kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry, const io_name_t plane,
                                              io_iterator_t* iterator);
kern_return_t IORegistryEntryGetParentIterator(io_registry_entry_t entry, const io_name_t plane,
                                               io_iterator_t* iterator);
io_object_t IOIteratorNext(io_iterator_t iterator);
boolean_t IOIteratorIsValid(io_iterator_t iterator);
void IOIteratorReset(io_iterator_t iterator);
boolean_t IOObjectConformsTo(io_object_t object, const io_name_t className);
kern_return_t IOObjectGetClass(io_object_t object, io_name_t className);
CFStringRef IOObjectCopySuperclassForClass(CFStringRef className);
kern_return_t IORegistryEntryGetRegistryEntryID(io_registry_entry_t entry, uint64_t* id);
kern_return_t IORegistryEntryGetNameInPlane(io_registry_entry_t entry, const io_name_t plane,
                                            io_name_t name);
kern_return_t IORegistryEntryGetPath(io_registry_entry_t entry, const io_name_t plane,
                                     io_string_t path);
kern_return_t IORegistryEntryGetLocationInPlane(io_registry_entry_t entry, const io_name_t plane,
                                                io_name_t location);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);
kern_return_t IOObjectRetain(io_object_t object);
kern_return_t IOObjectRelease(io_object_t object);
}
