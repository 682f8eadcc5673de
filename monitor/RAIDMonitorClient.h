#pragma once

#include <string>

#include "RAIDMonitoringExport.h"

namespace RAIDMonitoring {

class RAIDVolume;

// What an application implements to hear of RAID volumes.
//
// Ownership: the application's; a monitor never deletes its clients. A volume is valid during the
//            call; a client that keeps it longer takes a reference of its own with ref().
// Thread:    called on the event thread, synchronously, clients in the order of their registration.
//            From inside a callback a client must not add or remove clients, delete the monitor or
//            shut it down, or make devices depart.
// Failure:   a callback must not throw.
//
// A volume that changes its state is reported twice in the same refresh. The host() of a volume
// that is reported gone may have ended before it.
//
// The order of the virtual operations is part of the binary interface.
class RAIDMONITORING_EXPORT RAIDMonitorClient {
 public:
  RAIDMonitorClient() = default;
  RAIDMonitorClient(const RAIDMonitorClient&) = default;
  RAIDMonitorClient& operator=(const RAIDMonitorClient&) = default;
  virtual ~RAIDMonitorClient();

  // A name for the client: "0x" and the first seven of the sixteen digits of its address. Nothing
  // in the library asks for it.
  virtual std::string identifier();

  virtual void RAIDAppeared(RAIDVolume* volume) = 0;
  virtual void RAIDDisappeared(RAIDVolume* volume) = 0;
  virtual void RAIDUpdated(RAIDVolume* volume) = 0;
};

}  // namespace RAIDMonitoring
