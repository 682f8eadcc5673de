#pragma once

// The operating system's registry: its own headers, with nothing declared anew.

#include <AvailabilityMacros.h>
#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

// macOS 12 gave the constant a new name and deprecated the old one; earlier systems know only the
// old one, which is the one used throughout.
#if MAC_OS_X_VERSION_MIN_REQUIRED >= 120000
#define kIOMasterPortDefault kIOMainPortDefault
#endif
