#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "model/RAIDVolume.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"
#include "thunderbolt/HeldVolumes.h"
#include "thunderbolt/ThunderboltDevice.h"

namespace RAIDMonitoring {

using Pelago::Logger;

namespace {

// Whether the controllers differ that the boot-device paths of a stripe set name. The first one met
// is what every later one is compared with, in the same path or in another.
class BootControllers {
 public:
  void readPath(CFStringRef path) {
    const auto components = CFReference<CFArrayRef>::adopt(
        CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, path, CFSTR(kPathSeparator)));
    if (!components) return;
    const CFIndex count = CFArrayGetCount(components.get());
    for (CFIndex index = 0; index < count; ++index) {
      readComponent(static_cast<CFStringRef>(CFArrayGetValueAtIndex(components.get(), index)));
    }
  }

  bool differ() const { return _differ; }

 private:
  void readComponent(CFStringRef component) {
    if (!CFStringHasPrefix(component, CFSTR(kBootControllerPrefix))) return;
    if (!_first) {
      _first = CFReference<CFStringRef>::adopt(static_cast<CFStringRef>(CFRetain(component)));
    } else if (CFStringCompare(_first.get(), component, 0) != kCFCompareEqualTo) {
      _differ = true;
    }
  }

  CFReference<CFStringRef> _first;
  bool _differ = false;
};

// The path of one boot device, borrowed; null when the element is no dictionary or has no such
// text.
CFStringRef bootDevicePath(CFTypeRef bootDevice) {
  if (bootDevice == nullptr || CFGetTypeID(bootDevice) != CFDictionaryGetTypeID()) return nullptr;
  const void* path =
      CFDictionaryGetValue(static_cast<CFDictionaryRef>(bootDevice), CFSTR(kBootDevicePathKey));
  if (path == nullptr || CFGetTypeID(path) != CFStringGetTypeID()) return nullptr;
  return static_cast<CFStringRef>(path);
}

// Whether the disks of a stripe set hang off different controllers.
bool spansControllers(io_registry_entry_t stripeSet) {
  io_registry_entry_t child = 0;
  IORegistryEntryGetChildEntry(stripeSet, kServicePlane, &child);
  if (child == 0) return false;
  // Kept on purpose: each check leaves one reference on the set's child.
  const auto bootDevices = CFReference<CFArrayRef>::adopt(
      IOKitUtilities::GetServiceArrayProperty(child, kBootDeviceKey));
  if (!bootDevices) return false;
  BootControllers controllers;
  const CFIndex count = CFArrayGetCount(bootDevices.get());
  for (CFIndex index = 0; index < count; ++index) {
    const CFStringRef path = bootDevicePath(CFArrayGetValueAtIndex(bootDevices.get(), index));
    if (path != nullptr) controllers.readPath(path);
  }
  return controllers.differ();
}

}  // namespace

std::set<RAIDVolume*> ThunderboltDevice::findRAIDs() {
  // Kept on purpose: each search leaves one reference on the bridge.
  const io_registry_entry_t bridge = IORegistryEntryFromPath(registryPort, _pciBridgePath.c_str());
  if (bridge == 0) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object");
    return {};
  }
  RegistryHandle iterator;
  if (IORegistryEntryCreateIterator(bridge, kServicePlane, kIORegistryIterateRecursively,
                                    iterator.receive()) != kIOReturnSuccess ||
      !iterator) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::findRAIDs - couldn't create iterator on PCI Bridge");
    return {};
  }
  HeldVolumes found;
  while (const auto entry = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    if (!IOObjectConformsTo(entry.get(), kRAIDSetClass)) continue;
    RAIDVolume* volume = readVolume(entry.get());
    found.add(volume);
    // After the read, whose state it overrides.
    if (IOObjectConformsTo(entry.get(), kRAIDStripeSetClass) && spansControllers(entry.get())) {
      volume->setState(VolumeCrossDevice);
    }
  }
  return found.release();
}

// The volume of a set's entry, freshly read: the one on file, or a new one, which nobody holds yet.
// A set that is met twice before it is on file yields two.
RAIDVolume* ThunderboltDevice::readVolume(io_registry_entry_t entry) {
  const std::string uuid = RAIDVolume::UUIDFromEntry(entry);
  const auto filed = _volumes.find(uuid);
  if (filed == _volumes.end()) return new RAIDVolume(this, uuid);
  filed->second->refresh();
  return filed->second;
}

void ThunderboltDevice::disksFound() {
  HeldVolumes found(findRAIDs());
  while (const auto volume = found.takeFirst())
    addRAIDVolume(volume.get());
}

void ThunderboltDevice::refresh() {
  HeldVolumes found(findRAIDs());
  std::set<std::string_view> seen;  // keys of the map of volumes
  while (const auto volume = found.takeFirst()) {
    if (_volumes.count(volume->uuid()) == 0) addRAIDVolume(volume.get());
    const auto filed = _volumes.find(volume->uuid());
    if (filed != _volumes.end()) seen.insert(filed->first);
  }
  std::vector<RAIDVolume*> gone;
  for (const auto& [uuid, volume] : _volumes) {
    if (seen.count(uuid) == 0) gone.push_back(volume);
  }
  for (RAIDVolume* volume : gone)
    removeRAIDVolume(volume);
}

}  // namespace RAIDMonitoring
