#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "platform/pelago/Application.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"
#include "thunderbolt/PollingEvent.h"
#include "thunderbolt/ThunderboltDevice.h"

namespace RAIDMonitoring {

using Pelago::Logger;

namespace {

constexpr std::int32_t UpstreamPCIeAdapter = 0x100102;

// Opens a recursive walk beneath an entry; none when the registry refuses or has none to give.
RegistryHandle walkBeneath(io_registry_entry_t entry) {
  RegistryHandle iterator;
  if (IORegistryEntryCreateIterator(entry, kServicePlane, kIORegistryIterateRecursively,
                                    iterator.receive()) != kIOReturnSuccess) {
    return {};
  }
  return iterator;
}

bool hasPCIPath(io_registry_entry_t port) {
  return static_cast<bool>(CFReference<CFTypeRef>::adopt(
      IORegistryEntryCreateCFProperty(port, CFSTR(kPCIPathKey), kCFAllocatorDefault, 0)));
}

// The first child of the switch that leads upstream and has its PCI path already; else none.
RegistryHandle findUpstreamPort(io_registry_entry_t switchEntry) {
  RegistryHandle ports;
  if (IORegistryEntryGetChildIterator(switchEntry, kServicePlane, ports.receive()) !=
          kIOReturnSuccess ||
      !ports) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::waitForUpstreamPort - could not create iterator for ports");
    return {};
  }
  while (auto port = RegistryHandle::adopt(IOIteratorNext(ports.get()))) {
    if (IOKitUtilities::GetServiceIntProperty(port.get(), kAdapterTypeKey) != UpstreamPCIeAdapter) {
      continue;
    }
    if (hasPCIPath(port.get())) return port;
    Logger::Debug("RAIDMonitor",
                  "ThunderboltDevice::waitForUpstreamPort - PCI Path is not available yet. "
                  "Waiting...");
  }
  return {};
}

std::string pathOf(io_registry_entry_t entry) {
  io_string_t path;
  if (IORegistryEntryGetPath(entry, kServicePlane, path) != kIOReturnSuccess) return {};
  return path;
}

// Whether the last component of the path holds the character whose code is the low byte of
// `number`.
bool lastComponentHolds(const std::string& path, std::int32_t number) {
  const std::size_t slash = path.rfind('/');
  return slash != std::string::npos &&
         path.find(static_cast<char>(number & 0xFF), slash) != std::string::npos;
}

// The path of the first PCI device of the walk; empty when there is none, or none can be had.
std::string firstPCIDevicePath(io_iterator_t iterator, std::int32_t deviceNumber) {
  while (auto entry = RegistryHandle::adopt(IOIteratorNext(iterator))) {
    if (!IOObjectConformsTo(entry.get(), kPCIDeviceClass)) continue;
    std::string path = pathOf(entry.get());
    // The test says nothing about which device is taken. Kept on purpose: where the character does
    // not occur, the entry's reference is not given back.
    if (!lastComponentHolds(path, deviceNumber)) entry.keep();
    return path;
  }
  return {};
}

// The path of the PCI bridge behind an upstream port, empty when there is no bridge with a path;
// none at all, and the reason logged, when the port is not that far yet.
std::optional<std::string> findBridgePath(io_registry_entry_t upstreamPort) {
  const std::string portPath = IOKitUtilities::GetServiceStringProperty(upstreamPort, kPCIPathKey);
  if (portPath.empty()) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::waitForPCIBridge - can't read back the upstream port's PCI "
                    "Path property");
    return std::nullopt;
  }
  const std::int32_t deviceNumber =
      IOKitUtilities::GetServiceIntProperty(upstreamPort, kPCIDeviceKey);
  if (deviceNumber < 0) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::waitForPCIBridge - can't read back the upstream port's PCI "
                    "Device property");
    return std::nullopt;
  }
  auto pathEntry = RegistryHandle::adopt(IORegistryEntryFromPath(registryPort, portPath.c_str()));
  if (!pathEntry) {
    Logger::Message("RAIDMonitor", "ThunderboltDevice:: Cannot create entry");
    return std::nullopt;
  }
  auto iterator = walkBeneath(pathEntry.get());
  if (!iterator) {
    Logger::Message("RAIDMonitor", "ThunderboltDevice:: Cannot create iterator for member entry");
    return std::nullopt;
  }
  std::string path = firstPCIDevicePath(iterator.get(), deviceNumber);
  iterator.reset();
  pathEntry.reset();
  // To standard output, on purpose, and also when the path is empty.
  std::printf("the Complete Path is %s\n\n", path.c_str());
  return path;
}

bool hasBSDClient(io_registry_entry_t partitionScheme) {
  const auto iterator = walkBeneath(partitionScheme);
  if (!iterator) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::waitForDisks - Couldn't create iterator on Partition "
                    "Scheme");
    return false;
  }
  while (const auto entry = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    if (IOObjectConformsTo(entry.get(), kMediaBSDClientClass)) return true;
  }
  return false;
}

bool hasDisks(io_registry_entry_t bridge) {
  const auto iterator = walkBeneath(bridge);
  if (!iterator) {
    Logger::Message("RAIDMonitor",
                    "ThunderboltDevice::waitForDisks - couldn't create iterator on PCI Bridge");
    return false;
  }
  while (const auto entry = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    if (IOObjectConformsTo(entry.get(), kPartitionSchemeClass) && hasBSDClient(entry.get())) {
      return true;
    }
  }
  return false;
}

// Has the device look at `entry` again; the reference moves into the event.
void lookAgain(ThunderboltDevice* device, PollingEvent::Type stage, RegistryHandle entry) {
  auto* event = new PollingEvent(stage, entry.get());
  entry.keep();  // the event's from here on
  Pelago::Application::PostEvent(device, event);
}

// A look that ran out of memory was the device's only one: without another it would never come up.
// Back to the start, because what the look had in hand is gone.
template <class Look>
void lookOrStartAgain(ThunderboltDevice* device, const Look& look) {
  try {
    look();
  } catch (...) {
    // With a bridge the periodic refresh takes over.
    if (device->pciBridgePath().empty()) {
      auto switchEntry = RegistryHandle::adopt(device->findRegistryEntry());
      if (switchEntry) lookAgain(device, PollingEvent::UpstreamPort, std::move(switchEntry));
    }
    throw;
  }
}

}  // namespace

// Only the type is looked at: any event of these three is taken for a PollingEvent.
void ThunderboltDevice::event(Pelago::Event* event) {
  switch (event->type()) {
    case PollingEvent::UpstreamPort:
      return lookOrStartAgain(
          this, [=] { waitForUpstreamPort(static_cast<PollingEvent*>(event)->takeEntry()); });
    case PollingEvent::PCIBridge:
      return lookOrStartAgain(
          this, [=] { waitForPCIBridge(static_cast<PollingEvent*>(event)->takeEntry()); });
    case PollingEvent::Disks:
      return waitForDisks(static_cast<PollingEvent*>(event)->takeEntry());
    default:
      return RAIDHost::event(event);
  }
}

void ThunderboltDevice::waitForUpstreamPort(io_registry_entry_t switchEntry) {
  auto held = RegistryHandle::adopt(switchEntry);
  Logger::Debug("RAIDMonitor",
                "ThunderboltDevice - Trying to find upstream port for device '%016llx'",
                static_cast<unsigned long long>(_uid));
  auto port = findUpstreamPort(switchEntry);
  if (!port) return lookAgain(this, PollingEvent::UpstreamPort, std::move(held));
  held.reset();
  waitForPCIBridge(port.release());
}

void ThunderboltDevice::waitForPCIBridge(io_registry_entry_t upstreamPort) {
  auto held = RegistryHandle::adopt(upstreamPort);
  Logger::Debug("RAIDMonitor", "ThunderboltDevice - Trying to find PCI Bridge for device '%016llx'",
                static_cast<unsigned long long>(_uid));
  const auto path = findBridgePath(upstreamPort);
  RegistryHandle bridge;
  if (path) bridge = RegistryHandle::adopt(IORegistryEntryFromPath(registryPort, path->c_str()));
  if (!bridge) return lookAgain(this, PollingEvent::PCIBridge, std::move(held));
  _pciBridgePath = *path;
  Logger::Debug("Thunderbolt device", "The _pciBridgePath  path is  %s", _pciBridgePath.c_str());
  held.reset();
  waitForDisks(bridge.release());
}

void ThunderboltDevice::waitForDisks(io_registry_entry_t bridgeEntry) {
  auto held = RegistryHandle::adopt(bridgeEntry);
  Logger::Message("RAIDMonitor", "ThunderboltDevice::waitForDisks");
  if (hasDisks(bridgeEntry)) {
    held.reset();
    disksFound();
  } else {
    // Kept on purpose: the stage ends here for good, with its reference on the bridge.
    held.keep();
  }
}

}  // namespace RAIDMonitoring
