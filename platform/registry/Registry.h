#pragma once

// The seam to the I/O Registry: the operations of IOKit and CoreFoundation that the system uses,
// under their own names. Which registry answers is decided when linking: the operating system's
// (iokit/) or the in-memory one (memory/). Nothing outside this folder includes a header of IOKit.
//
// What holds for every operation:
//   Handles    are unsigned 32-bit numbers, 0 meaning none. Each handle that an operation returns
//              carries one reference, which its last keeper gives back with IOObjectRelease.
//   Values     follow CoreFoundation's rule: an operation named Create or Copy returns a value that
//              the caller releases with CFRelease, one named Get returns a borrowed one.
//   Failure    nothing throws (allocation failures apart). A handle that is 0, released or of a
//              terminated entry is answered with an error, 0, null or false. Null where a value is
//              required is a programming error, and traps.
//   Thread     one thread at a time.

#if defined(RAIDMONITORING_REGISTRY_IOKIT)
#include "platform/registry/iokit/SystemRegistry.h"
#else
#include "platform/registry/memory/MemoryRegistrySeam.h"
#endif

namespace RAIDMonitoring {

// The port that every look-up is made at: 0, which means the default one. IOKit's constant of that
// value goes by another name from macOS 12 on, which deprecates the old one.
inline constexpr mach_port_t registryPort = 0;

}  // namespace RAIDMonitoring
