#include "model/AppleRAIDMember.h"

#include <utility>

#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace RAIDMonitoring {

using Pelago::Logger;

namespace {

// The path of the nearest AHCI port above the entry, followed directly by the port's location: what
// is left to tell disks apart when an entry's own path can't be had.
std::string portPathAndLocation(io_registry_entry_t entry) {
  RegistryHandle ancestors;
  if (IORegistryEntryCreateIterator(entry, kServicePlane,
                                    kIORegistryIterateRecursively | kIORegistryIterateParents,
                                    ancestors.receive()) != kIOReturnSuccess) {
    // Names another operation than this one. Readers of the log match on it, so it stays.
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::locationOfMember - Cannot get parent iterator for member "
                    "entry");
    return {};
  }
  while (auto ancestor = RegistryHandle::adopt(IOIteratorNext(ancestors.get()))) {
    if (!IOObjectConformsTo(ancestor.get(), kAHCIPortClass)) continue;
    io_name_t location;
    io_string_t path;
    const bool located = IORegistryEntryGetLocationInPlane(ancestor.get(), kServicePlane,
                                                           location) == kIOReturnSuccess;
    std::string text;
    if (IORegistryEntryGetPath(ancestor.get(), kServicePlane, path) == kIOReturnSuccess) {
      text = path;
    }
    if (located) text += location;
    return text;
  }
  return {};
}

}  // namespace

AppleRAIDMember::AppleRAIDMember(RAIDVolume* volume, std::string uuid) {
  _volume = volume;
  _uuid = std::move(uuid);
  const auto entry = RegistryHandle::adopt(findRegistryEntry());
  if (entry) {
    readProperties(entry.get());
  } else {
    // A Message here and a Debug line in refresh(): the first absence is news, later ones are not.
    Logger::Message("RAIDMonitor",
                    "AppleRAIDMember::AppleRAIDMember - Cannot find registry entry for AppleRAID "
                    "member");
    _state = MemberNotFound;
  }
}

AppleRAIDMember::~AppleRAIDMember() = default;

void AppleRAIDMember::refresh() {
  const auto entry = RegistryHandle::adopt(entryFromUUID());
  if (entry) {
    readProperties(entry.get());
  } else {
    Logger::Debug("RAIDMonitor",
                  "AppleRAIDMember::refresh - Cannot find registry entry for AppleRAID member");
    _state = MemberNotFound;
  }
}

std::string AppleRAIDMember::UUIDFromEntry(io_registry_entry_t entry) {
  return IOKitUtilities::GetServiceStringProperty(entry, kRAIDMemberUUIDKey);
}

// The search at first sight. It gives the bridge back and takes any entry that is a member by
// class, a RAID set that is itself a member included; the later searches do neither.
io_registry_entry_t AppleRAIDMember::findRegistryEntry() const {
  const auto bridge = RegistryHandle::adopt(
      IORegistryEntryFromPath(registryPort, _volume->host()->pciBridgePath().c_str()));
  if (!bridge) {
    Logger::Message("RAIDMonitor",
                    "AppleRAIDMember::findRegistryEntry - couldn't find PCI Bridge registry entry");
    return 0;
  }
  RegistryHandle iterator;
  IORegistryEntryCreateIterator(bridge.get(), kServicePlane, kIORegistryIterateRecursively,
                                iterator.receive());
  if (!iterator) {
    Logger::Message("RAIDMonitor", "AppleRAIDMember::findRegistryEntry - cannot create iterator");
    return 0;
  }
  while (auto entry = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    if (IOObjectConformsTo(entry.get(), kRAIDMemberClass) &&
        IOKitUtilities::GetServiceStringProperty(entry.get(), kRAIDMemberUUIDKey) == _uuid) {
      return entry.release();
    }
  }
  return 0;
}

io_registry_entry_t AppleRAIDMember::entryFromUUID() const {
  // Kept on purpose: each look-up leaves one reference on the bridge.
  const io_registry_entry_t bridge =
      IORegistryEntryFromPath(registryPort, _volume->host()->pciBridgePath().c_str());
  if (bridge == 0) {
    Logger::Message("RAIDMonitor",
                    "AppleRAIDMember::entryFromUUID - Cannot find back the PCI Bridge object");
    return 0;
  }
  RegistryHandle iterator;
  if (IORegistryEntryCreateIterator(bridge, kServicePlane, kIORegistryIterateRecursively,
                                    iterator.receive()) != kIOReturnSuccess ||
      !iterator) {
    Logger::Message("RAIDMonitor",
                    "AppleRAIDMember::entryFromUUID - couldn't create iterator on PCI Bridge");
    return 0;
  }
  while (auto entry = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    if (IOObjectConformsTo(entry.get(), kRAIDMemberClass) &&
        !IOObjectConformsTo(entry.get(), kRAIDSetClass) && UUIDFromEntry(entry.get()) == _uuid) {
      return entry.release();
    }
  }
  return 0;
}

void AppleRAIDMember::readProperties(io_registry_entry_t entry) {
  readMemberState(IOKitUtilities::GetServiceStringProperty(entry, kRAIDMemberStatusKey), _state);
  io_string_t path;
  if (IORegistryEntryGetPath(entry, kServicePlane, path) == kIOReturnSuccess) {
    _registryPath = path;
    return;
  }
  Logger::Message("RAIDMonitor",
                  "AppleRAIDMember::readProperties - Unable to found AppleRAID-MemberStatus "
                  "IORegustry entry path");
  _registryPath = portPathAndLocation(entry);
}

}  // namespace RAIDMonitoring
