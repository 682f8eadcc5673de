#include "application/session/Discovery.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "application/StandardError.h"
#include "application/session/SessionObserver.h"
#include "platform/pelago/DiscoveryManager.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace Program {
namespace {

using RAIDMonitoring::CFReference;
using RAIDMonitoring::RegistryHandle;

using UIDs = std::set<std::uint64_t>;

// A registry that changes under every one of so many walks is left for the next look.
constexpr int Attempts = 20;

std::optional<std::int64_t> numberOf(io_registry_entry_t entry, CFStringRef key) {
  const auto value = CFReference<CFTypeRef>::adopt(
      IORegistryEntryCreateCFProperty(entry, key, kCFAllocatorDefault, 0));
  if (!value || CFGetTypeID(value.get()) != CFNumberGetTypeID()) return std::nullopt;
  std::int64_t number = 0;
  if (!CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberSInt64Type, &number)) {
    return std::nullopt;
  }
  return number;
}

// Depth 0 is the computer's own switch.
std::optional<std::uint64_t> deviceOf(io_registry_entry_t entry) {
  if (!IOObjectConformsTo(entry, kThunderboltSwitchClass)) return std::nullopt;
  if (numberOf(entry, CFSTR(kSwitchDepthKey)) == 0) return std::nullopt;
  const auto uid = numberOf(entry, CFSTR(kSwitchUIDKey));
  if (!uid) return std::nullopt;
  return static_cast<std::uint64_t>(*uid);
}

UIDs walk(io_iterator_t iterator) {
  UIDs uids;
  while (const auto entry = RegistryHandle::adopt(IOIteratorNext(iterator))) {
    if (const auto uid = deviceOf(entry.get())) uids.insert(*uid);
  }
  return uids;
}

std::vector<std::uint64_t> without(const UIDs& from, const UIDs& others) {
  std::vector<std::uint64_t> rest;
  std::set_difference(from.begin(), from.end(), others.begin(), others.end(),
                      std::back_inserter(rest));
  return rest;
}

Pelago::Device thunderboltDevice(std::uint64_t uid) {
  return Pelago::Device{uid, Pelago::Device::ThunderboltType};
}

}  // namespace

std::optional<UIDs> Discovery::devicesInRegistry() {
  RegistryHandle iterator;
  if (IORegistryCreateIterator(RAIDMonitoring::registryPort, kServicePlane,
                               kIORegistryIterateRecursively, iterator.receive()) != KERN_SUCCESS ||
      !iterator) {
    return std::nullopt;
  }
  for (int attempt = 0; attempt < Attempts; ++attempt) {
    UIDs uids = walk(iterator.get());
    if (IOIteratorIsValid(iterator.get())) return uids;
    IOIteratorReset(iterator.get());
  }
  return std::nullopt;
}

void Discovery::look() {
  const std::optional<UIDs> found = devicesInRegistry();
  if (!found) {
    printError("raidmonitor: the registry could not be searched for devices");
    _observer.lookFailed();
    return;
  }
  for (const std::uint64_t uid : without(_devices, *found))
    disappear(uid);
  for (const std::uint64_t uid : without(*found, _devices))
    appear(uid);
}

void Discovery::disappear(std::uint64_t uid) {
  _devices.erase(uid);
  _observer.deviceDisappeared(uid);
  _manager.deviceDisappeared(thunderboltDevice(uid));
}

void Discovery::appear(std::uint64_t uid) {
  _devices.insert(uid);
  _observer.deviceAppeared(uid);
  _manager.deviceAppeared(thunderboltDevice(uid));
}

}  // namespace Program
