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
//
// \code
// #include <set>
//
// #include "model/RAIDVolume.h"
//
// // Knows which volumes need somebody to look after them, by their UUIDs.
// class Troubles : public RAIDMonitoring::RAIDMonitorClient {
//  public:
//   void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override { note(*volume); }
//   void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override { note(*volume); }
//   void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override {
//     _troubles.erase(volume->uuid());
//   }
//
//  private:
//   void note(const RAIDMonitoring::RAIDVolume& volume) {
//     if (volume.state() == RAIDMonitoring::VolumeOnline) {
//       _troubles.erase(volume.uuid());
//     } else {
//       _troubles.insert(volume.uuid());
//     }
//   }
//
//   std::set<std::string> _troubles;
// };
// \endcode
class RAIDMONITORING_EXPORT RAIDMonitorClient {
 public:
  // Unknown to every monitor, as a copy is too.
  RAIDMonitorClient() = default;
  RAIDMonitorClient(const RAIDMonitorClient&) = default;
  RAIDMonitorClient& operator=(const RAIDMonitorClient&) = default;
  virtual ~RAIDMonitorClient();

  // A name for the client: "0x" and the first seven of the sixteen digits of its address. Nothing
  // in the library asks for it.
  virtual std::string identifier();

  // A volume has become known, in whatever state it is.
  virtual void RAIDAppeared(RAIDVolume* volume) = 0;
  // One that was told of is gone: its set, or the device that it is on.
  virtual void RAIDDisappeared(RAIDVolume* volume) = 0;
  // One that was told of has changed, or one of its members has.
  virtual void RAIDUpdated(RAIDVolume* volume) = 0;
};

}  // namespace RAIDMonitoring
