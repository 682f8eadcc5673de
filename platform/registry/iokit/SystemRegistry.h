#pragma once

// The operating system's registry: its own headers, with nothing declared anew.

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
