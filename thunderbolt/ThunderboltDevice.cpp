#include "thunderbolt/ThunderboltDevice.h"

#include "model/AscendingStorage.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace RAIDMonitoring {

using IOKitUtilities::GetServiceStringProperty;
using IOKitUtilities::GetServiceUInt64Property;
using Pelago::Logger;

namespace {

AscendingStorage<ThunderboltDevice, 4096> storage;

using Dictionary = CFReference<CFMutableDictionaryRef>;

Dictionary makeDictionary() {
  return Dictionary::adopt(CFDictionaryCreateMutable(
      kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

// How many disks the known enclosures take; any other leaves the count alone.
void setBayCount(std::uint64_t vendorID, std::uint64_t modelID, std::uint8_t& bayCount) {
  if (vendorID != 3) return;
  if (modelID == 1 || modelID == 2) bayCount = 2;
  if (modelID == 6) bayCount = 5;
}

}  // namespace

ThunderboltDevice::ThunderboltDevice(std::uint64_t uid) : _uid(uid) {
  auto switchEntry = RegistryHandle::adopt(findRegistryEntry());
  if (switchEntry) {
    setBasicProperties(switchEntry.get());
    waitForUpstreamPort(switchEntry.release());
    return;
  }
  // The text lacks its conversion, on purpose: readers of the log match on it, and the UID stands
  // in the line before.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-extra-args"
  Logger::Message("RAIDMonitor-ThunderboltDevice",
                  "Cannot find IOThunderboltSwitch with UUID 0x016llx", uid);
#pragma GCC diagnostic pop
}

ThunderboltDevice::~ThunderboltDevice() = default;

void* ThunderboltDevice::operator new(std::size_t size) { return storage.allocate(size); }

void ThunderboltDevice::operator delete(void* memory) noexcept { storage.release(memory); }

// The out-of-memory texts name another operation than this one; they stay word for word.
io_registry_entry_t ThunderboltDevice::findRegistryEntry() const {
  auto matching = makeDictionary();
  if (!matching) {
    Logger::Message("RAIDMonitor",
                    "IOObjectFromDevice - Cannot create matching dictionary. Out of memory?");
    return 0;
  }
  CFDictionarySetValue(matching.get(), CFSTR(kProviderClassKey), CFSTR(kThunderboltSwitchClass));
  const auto properties = makeDictionary();
  if (!properties) {
    Logger::Message("RAIDMonitor",
                    "IOObjectFromDevice - Cannot create UUID matching dictionary. Out of memory?");
    return 0;
  }
  // A signed number of the same 64 bits: a UID with the top bit set goes in as a negative one.
  const auto number = CFReference<CFNumberRef>::adopt(
      CFNumberCreate(kCFAllocatorDefault, kCFNumberLongLongType, &_uid));
  if (!number) {
    Logger::Message("RAIDMonitor",
                    "IOObjectFromDevice - Cannot create UID CFNumber. Out of memory?");
    return 0;
  }
  CFDictionarySetValue(properties.get(), CFSTR(kSwitchUIDKey), number.get());
  CFDictionarySetValue(matching.get(), CFSTR(kPropertyMatchKey), properties.get());
  // Consumes the dictionary.
  const io_service_t service = IOServiceGetMatchingService(registryPort, matching.release());
  if (service == 0) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::findRegistryEntry() - Thunderbolt device with UUID "
                    "'0x%016llx' was not found.",
                    static_cast<unsigned long long>(_uid));
  }
  return service;
}

void ThunderboltDevice::setBasicProperties(io_registry_entry_t switchEntry) {
  _modelName = GetServiceStringProperty(switchEntry, kDeviceModelNameKey);
  _modelID = GetServiceUInt64Property(switchEntry, kDeviceModelIDKey);
  _vendorName = GetServiceStringProperty(switchEntry, kDeviceVendorNameKey);
  _vendorID = GetServiceUInt64Property(switchEntry, kDeviceVendorIDKey);
  _deviceStatus = 0;
  setBayCount(_vendorID, _modelID, _bayCount);
}

bool ThunderboltDevice::matchesDevice(const Pelago::Device& device) {
  return device.type == Pelago::Device::ThunderboltType && device.id == _uid;
}

}  // namespace RAIDMonitoring
