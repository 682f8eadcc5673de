#include <string>
#include <vector>

#include "model/AppleRAIDMember.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"
#include "thunderbolt/ParseLocation.h"
#include "thunderbolt/ThunderboltDevice.h"

namespace RAIDMonitoring {

using Pelago::Logger;

namespace {

// How an enclosure's bays follow from the registry.
enum class Layout {
  None,          // not known
  TwoBay,        // the port's number, counted from 1
  BridgeMapped,  // the port's number, plus an offset for the bridge that it hangs off
};

Layout layoutOf(const RAIDHost& host) {
  if (host.vendorID() != 3) return Layout::None;
  switch (host.modelID()) {
    case 1:
    case 2:
      return Layout::TwoBay;
    case 6:
      return Layout::BridgeMapped;
    default:
      return Layout::None;
  }
}

// Wraps around: a number that is read from the registry may be as large as it likes.
int sum(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

// The bay of a port behind the bridge at `bridge`. What is added to may be -1, no port: the rule of
// this enclosure answers 2 for bridge 7 and no port, and that is how it stays.
int withBridgeOffset(int result, int bridge) {
  switch (bridge) {
    case 7:
      return sum(result, 3);
    case 9:
      return sum(result, 1);
    case 5:
      return sum(result, 5);
    default:
      return -1;
  }
}

bool isPCIBridge(io_registry_entry_t entry) {
  return IOObjectConformsTo(entry, kPCIDeviceClass) &&
         IOKitUtilities::GetServiceStringProperty(entry, kNameKey) == kPCIBridgeName;
}

const std::string& registryPathOf(const RAIDMember* member) {
  static const std::string none;
  const auto* onRegistry = dynamic_cast<const AppleRAIDMember*>(member);
  return onRegistry != nullptr ? onRegistry->registryPath() : none;
}

// The walk up from a member; none, which is logged, when it can't be started.
bool openAncestors(io_registry_entry_t memberEntry, RegistryHandle& ancestors) {
  if (IORegistryEntryCreateIterator(memberEntry, kServicePlane,
                                    kIORegistryIterateRecursively | kIORegistryIterateParents,
                                    ancestors.receive()) == kIOReturnSuccess) {
    return true;
  }
  Logger::Message("RAIDMonitor",
                  "ThunderboltDevice::locationOfMember - Cannot get parent iterator for member "
                  "entry");
  return false;
}

// -1 when the member's entry is not there or the walk can't be started; 0 when no port is met.
int twoBaySlot(io_registry_entry_t memberEntry) {
  if (memberEntry == 0) {
    Logger::Debug("RAIDMonitor",
                  "ThunderboltDevice::locationOfMember - cannot find member registry entry");
    return -1;
  }
  RegistryHandle ancestors;
  if (!openAncestors(memberEntry, ancestors)) return -1;
  int result = -1;
  while (result < 0) {
    const auto ancestor = RegistryHandle::adopt(IOIteratorNext(ancestors.get()));
    if (!ancestor) break;
    if (IOObjectConformsTo(ancestor.get(), kAHCIPortClass)) readLocation(ancestor.get(), result);
  }
  return sum(result, 1);
}

int bridgeMappedSlot(io_registry_entry_t memberEntry) {
  if (memberEntry == 0) {
    // A Message, where the two-bay enclosure has a Debug line.
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::locationOfMember - cannot find member registry entry");
    return -1;
  }
  RegistryHandle ancestors;
  if (!openAncestors(memberEntry, ancestors)) return -1;
  int result = -1;
  int bridge = -1;
  // Bridges at 4 and below lie between the port and the one that tells the bay: the walk goes on.
  while (result < 0 || bridge <= 4) {
    const auto ancestor = RegistryHandle::adopt(IOIteratorNext(ancestors.get()));
    if (!ancestor) break;
    if (IOObjectConformsTo(ancestor.get(), kAHCIPortClass)) {
      readLocation(ancestor.get(), result);
    } else if (isPCIBridge(ancestor.get())) {
      readLocation(ancestor.get(), bridge);
    }
  }
  return withBridgeOffset(result, bridge);
}

// The number of the port that a disk hangs off.
void readPortOf(io_registry_entry_t disk, int& number) {
  RegistryHandle port;
  IORegistryEntryGetParentEntry(disk, kServicePlane, port.receive());
  readLocation(port.get(), number);
}

// Every entry of the walk down is asked for its path, and nothing is made of the answer: kept, so
// that a search makes the same calls as ever.
void askForPath(io_registry_entry_t entry) {
  io_string_t unused;
  IORegistryEntryGetPath(entry, kServicePlane, unused);
}

int searchTwoBay(io_iterator_t iterator, int slot) {
  int result = -1;
  // Kept on purpose: this walk gives none of its entries back, unlike the other enclosure's.
  while (const io_registry_entry_t entry = IOIteratorNext(iterator)) {
    askForPath(entry);
    if (IOObjectConformsTo(entry, kAHCIDeviceClass)) {
      readPortOf(entry, result);
      result = sum(result, 1);
    }
    if (result == slot) break;
  }
  return result;
}

int searchBridgeMapped(io_iterator_t iterator, int slot) {
  int result = -1;
  int bridge = -1;
  while (const auto entry = RegistryHandle::adopt(IOIteratorNext(iterator))) {
    askForPath(entry.get());
    if (IOObjectConformsTo(entry.get(), kAHCIDeviceClass)) {
      readPortOf(entry.get(), result);
      result = withBridgeOffset(result, bridge);
    } else if (isPCIBridge(entry.get())) {
      readLocation(entry.get(), bridge);
    }
    if (result == slot) break;
  }
  return result;
}

}  // namespace

int ThunderboltDevice::locationOfMember(RAIDMember* member, bool inferSlot) {
  const Layout layout = layoutOf(*this);
  if (layout == Layout::None) return -1;
  auto entry =
      RegistryHandle::adopt(IORegistryEntryFromPath(registryPort, registryPathOf(member).c_str()));
  if (layout == Layout::BridgeMapped) return bridgeMappedSlot(entry.get());
  const int result = twoBaySlot(entry.get());
  entry.reset();
  return result == -1 && inferSlot ? inferredLocation(member) : result;
}

// Where the other disk is not. When that is not known either, the member gets the other's place in
// the list, counted from 1: not its own, on purpose.
int ThunderboltDevice::inferredLocation(const RAIDMember* member) {
  if (member == nullptr || member->volume() == nullptr) return -1;
  const std::vector<RAIDMember*> members = member->volume()->members();
  for (std::size_t index = 0; index < members.size(); ++index) {
    RAIDMember* other = members[index];
    if (other->uuid() == member->uuid()) continue;
    const int location = locationOfMember(other, false);
    return location <= 0 ? static_cast<int>(index) + 1 : location ^ 3;
  }
  return -1;
}

int ThunderboltDevice::locationOfNotMember(int slot) {
  const Layout layout = layoutOf(*this);
  if (layout == Layout::None) return -1;
  // Kept on purpose: each search leaves one reference on the bridge. Both texts name other
  // operations than this one; readers of the log match on them.
  const io_registry_entry_t bridge = IORegistryEntryFromPath(registryPort, _pciBridgePath.c_str());
  if (bridge == 0) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::locationOfMember - cannot find member registry entry");
  }
  RegistryHandle iterator;
  if (IORegistryEntryCreateIterator(bridge, kServicePlane, kIORegistryIterateRecursively,
                                    iterator.receive()) != kIOReturnSuccess ||
      !iterator) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::entryFromUUID - couldn't create iterator on PCI Bridge");
    return -1;
  }
  return layout == Layout::TwoBay ? searchTwoBay(iterator.get(), slot)
                                  : searchBridgeMapped(iterator.get(), slot);
}

}  // namespace RAIDMonitoring
