#include "tests/support/EntryStaging.h"

#include <utility>

namespace TestSupport {

using MemoryRegistry::Dictionary;
using MemoryRegistry::EntryDescription;

EntryID addEntry(EntryID parent, const std::string& className, const std::string& name,
                 const std::string& location, Dictionary properties) {
  EntryDescription description;
  description.className = className;
  if (!name.empty()) description.name = name;
  description.location = location;
  description.properties = std::move(properties);
  return MemoryRegistry::add(parent, std::move(description));
}

EntryID addUnregistered(EntryID parent, const std::string& className, Dictionary properties) {
  EntryDescription description;
  description.className = className;
  description.state = 0U;
  description.properties = std::move(properties);
  return MemoryRegistry::add(parent, std::move(description));
}

EntryID addPCIBridge(EntryID parent, const std::string& name, const std::string& location) {
  const EntryID bridge =
      addEntry(parent, "IOPCIDevice", name, location, {{"IOName", "pci-bridge"}});
  addEntry(bridge, "IOPCI2PCIBridge", "IOPP");
  return bridge;
}

EntryID behindBridge(EntryID bridge) { return MemoryRegistry::children(bridge).at(0); }

}  // namespace TestSupport
