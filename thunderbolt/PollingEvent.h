#pragma once

#include "platform/pelago/Event.h"
#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

// "Look again": an event that a device which is coming up posts to itself. It carries the registry
// entry that the stage works on, with one reference.
//
// Ownership: the event owns the entry's reference until a stage takes it over; an event that is
//            dropped undelivered gives it back.
class PollingEvent : public Pelago::Event {
 public:
  // The event's type selects the stage.
  enum Type : unsigned {
    UpstreamPort = 3,  // the entry is the device's switch
    PCIBridge = 4,     // the entry is the switch's upstream port
    Disks = 5,         // the entry is the PCI bridge; accepted, never posted by the device
  };

  // Takes over the caller's reference to the entry.
  PollingEvent(unsigned type, io_registry_entry_t entry);
  ~PollingEvent() override;

  io_registry_entry_t entry() const { return _entry; }

  // The entry with its reference, which is the caller's from now on.
  io_registry_entry_t takeEntry();

 private:
  io_registry_entry_t _entry;
};

}  // namespace RAIDMonitoring
