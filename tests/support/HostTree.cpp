#include "tests/support/HostTree.h"

#include <string>

namespace TestSupport {

using MemoryRegistry::number64;

HostTree::HostTree() {
  const EntryID model = addEntry(MemoryRegistry::root(), "IOPlatformExpertDevice", "Host1,1");
  const EntryID platform = addEntry(model, "AppleACPIPlatformExpert");
  addEntry(model, "IOResources");
  const EntryID pci = addEntry(platform, "IOACPIPlatformDevice", "PCI0", "0");
  const EntryID rootBus = addEntry(pci, "AppleACPIPCI");
  _rootPort = addPCIBridge(rootBus, "PEG1", "1,1");
  const EntryID upstream = behindBridge(addPCIBridge(behindBridge(_rootPort), "UPSB", "0"));
  const EntryID controllerSlot = behindBridge(addPCIBridge(upstream, "DSB0", "0"));
  for (unsigned i = 0; i < Tunnels; ++i) {
    _tunnels[i] =
        behindBridge(addPCIBridge(upstream, "DSB" + std::to_string(i + 1), std::to_string(i + 3)));
  }
  const EntryID hostPort = addThunderbolt(controllerSlot);
  _ownSwitch = addEntry(hostPort, "IOThunderboltSwitchType2", "", "",
                        {{"UID", number64(OwnSwitchUID)}, {"Depth", 0}});
  for (unsigned i = 0; i < Tunnels; ++i) {
    _lanePorts[i] =
        addEntry(_ownSwitch, "IOThunderboltPort", "", std::to_string(i + 1), {{"Adapter Type", 1}});
  }
}

EntryID HostTree::addThunderbolt(EntryID controllerSlot) {
  const EntryID interface = addEntry(controllerSlot, "IOPCIDevice", "NHI0", "0");
  const EntryID layer = addEntry(interface, "AppleThunderboltHAL");
  const EntryID native = addEntry(layer, "AppleThunderboltNHIType2");
  const EntryID controller = addEntry(native, "IOThunderboltController");
  return addEntry(controller, "IOThunderboltPort", "", "5", {{"Adapter Type", 2}});
}

}  // namespace TestSupport
