#pragma once

#include <string>

#include "platform/registry/memory/MemoryRegistry.h"

namespace TestSupport {

using MemoryRegistry::EntryID;

// A new last child of `parent`. With no name, it has its class's.
EntryID addEntry(EntryID parent, const std::string& className, const std::string& name = "",
                 const std::string& location = "", MemoryRegistry::Dictionary properties = {});

// The same for an entry that is never registered, and so can't be matched.
EntryID addUnregistered(EntryID parent, const std::string& className,
                        MemoryRegistry::Dictionary properties = {});

// A PCI bridge: an IOPCIDevice with the IOName of a bridge, and the driver beneath it, whose
// children are what is behind the bridge. Returns the IOPCIDevice.
EntryID addPCIBridge(EntryID parent, const std::string& name, const std::string& location);
// The driver beneath a bridge made by addPCIBridge.
EntryID behindBridge(EntryID bridge);

}  // namespace TestSupport
