#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "RAIDMonitoringExport.h"
#include "model/RAIDHost.h"
#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

// A storage device on the Thunderbolt bus, known by the UID of its switch.
//
// It brings itself up in stages as the registry fills in: the switch, the switch's upstream port,
// the PCI bridge behind that port, disks behind the bridge. A stage that succeeds calls the next
// one at once; one that must wait posts a PollingEvent to the device and runs again on its
// delivery.
//
// Ownership: as any host. Registry entries are held only inside the operations and, between two
//            looks of the bring-up, by the PollingEvent.
// Thread:    the event thread only, the slot queries apart (see there).
// Failure:   logged; the device stays a host, at worst one without volumes.
//
// The order of the virtual operations is part of the binary interface.
class RAIDMONITORING_EXPORT ThunderboltDevice : public RAIDHost {
 public:
  // Finds the switch, reads who made the device and starts the bring-up.
  explicit ThunderboltDevice(std::uint64_t uid);
  ~ThunderboltDevice() override;

  // Devices lie in memory in the order of their making (AscendingStorage.h).
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) noexcept;

  // Delivers the bring-up's own events to their stages.
  void event(Pelago::Event* event) override;

  // Slot queries (RAIDHost.h). They read the registry and the host's fields, and change nothing.
  int locationOfMember(RAIDMember* member, bool inferSlot) override;
  int locationOfNotMember(int slot) override;

  bool matchesDevice(const Pelago::Device& device) override;

  // Searches for RAID sets anew: files those that are new, refreshes the others, removes those that
  // are gone.
  void refresh() override;

  // The UID of the device's switch.
  std::uint64_t uid() const { return _uid; }

  // ---- Identity (ThunderboltDevice.cpp)

  // The device's switch, with one reference for the caller, or 0.
  io_registry_entry_t findRegistryEntry() const;
  // Reads from the switch who made the device, and concludes the number of bays from that. The
  // reference stays the caller's.
  void setBasicProperties(io_registry_entry_t switchEntry);

  // ---- Bring-up (ThunderboltDeviceBringUp.cpp)

  // The stages, in their order. Each takes over the reference on its entry; when what it waits for
  // is there it goes on with the next one, and otherwise, the last one apart, posts itself anew.
  void waitForUpstreamPort(io_registry_entry_t switchEntry);
  void waitForPCIBridge(io_registry_entry_t upstreamPort);
  void waitForDisks(io_registry_entry_t bridgeEntry);

  // ---- Search for RAID sets (ThunderboltDeviceRAIDs.cpp)

  // The end of the bring-up: files the volumes that are there.
  void disksFound();

  // The volumes of all sets beneath the bridge, ordered by address, each with one reference for the
  // caller.
  std::set<RAIDVolume*> findRAIDs();

 private:
  friend class RAIDHost;  // answers its questions from this layer (HostQuestions.cpp)

  RAIDVolume* readVolume(io_registry_entry_t entry);
  int inferredLocation(const RAIDMember* member);

  std::uint64_t _uid;
  std::string _pciBridgePath;  // empty until the bring-up has found the bridge; then never changed
};

}  // namespace RAIDMonitoring
