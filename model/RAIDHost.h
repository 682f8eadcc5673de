#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "RAIDMonitoringExport.h"
#include "platform/pelago/Device.h"
#include "platform/pelago/Object.h"

namespace RAIDMonitoring {

class RAIDMember;
class RAIDVolume;

// A device that contains RAID volumes: who made it, and which volumes are on it at the moment.
//
// Ownership: the monitor keeps one reference on a host from its device's arrival to its departure;
//            the host keeps one on every volume that is filed with it.
// Thread:    the event thread only; nothing here locks.
// Failure:   nothing here fails or logs. A null volume is not expected by any operation.
//
// The order of the virtual operations is part of the binary interface.
//
// \code
// #include "model/RAIDMember.h"
// #include "model/RAIDVolume.h"
//
// // The disks of one host, bay by bay; those of which it is not known where they sit under -1.
// std::multimap<int, RAIDMonitoring::RAIDMember*> disksByBay(RAIDMonitoring::RAIDHost& host) {
//   std::multimap<int, RAIDMonitoring::RAIDMember*> disks;
//   for (RAIDMonitoring::RAIDVolume* volume : host.raidVolumes()) {
//     for (RAIDMonitoring::RAIDMember* member : volume->members()) {
//       disks.emplace(host.locationOfMember(member, true), member);
//     }
//   }
//   return disks;
// }
//
// // Whether some disk sits in that bay, a member or not.
// bool isOccupied(RAIDMonitoring::RAIDHost& host, int bay) {
//   return host.locationOfNotMember(bay) == bay;
// }
// \endcode
class RAIDMONITORING_EXPORT RAIDHost : public Pelago::Object {
 public:
  // Kept on purpose: volumes that are still filed do not get their reference back, so they outlive
  // the host.
  ~RAIDHost() override;

  // In which bay of the enclosure a member's disk sits, counted from 1; -1 when that is not known.
  // With `inferSlot`, a host may conclude it from the other members. The base version answers -1.
  virtual int locationOfMember(RAIDMember* member, bool inferSlot);

  // `slot` when a disk sits in that bay, else the bay of the disk looked at last, else -1. The base
  // version answers -1.
  virtual int locationOfNotMember(int slot);

  // Whether the host stands for this discovered device.
  virtual bool matchesDevice(const Pelago::Device& device) = 0;

  // Looks at the device again and brings its volumes up to date.
  virtual void refresh() = 0;

  // Files the volume under its UUID and takes a reference on it. A UUID that is filed already keeps
  // the volume it has, and nothing is taken.
  virtual void addRAIDVolume(RAIDVolume* volume);

  // Unfiles whatever volume is filed under this one's UUID, and gives one reference of the given
  // volume back: always, whether it was the one on file, another or none.
  virtual void removeRAIDVolume(RAIDVolume* volume);

  // The filed volumes in ascending order of their UUIDs. No references are taken: the pointers last
  // as long as the host keeps the volumes filed. Not for a host whose device has left: a set that
  // was announced through another host may be on file there still, and have ended.
  std::vector<RAIDVolume*> raidVolumes() const;

  // Who made the device, as it says itself: "invalid" and 0 until that has been read.
  const std::string& modelName() const { return _modelName; }
  std::uint64_t modelID() const { return _modelID; }
  const std::string& vendorName() const { return _vendorName; }
  std::uint64_t vendorID() const { return _vendorID; }
  // 0 once the four values above have been read, else -1.
  std::int32_t deviceStatus() const { return _deviceStatus; }
  // How many disks the enclosure takes; 0 when the model is not known.
  std::uint8_t bayCount() const { return _bayCount; }

  // Two plain questions that the layer answers which knows the kinds of host
  // (thunderbolt/HostQuestions.cpp). The registry path beneath which this host's sets live, empty
  // until the host has found it:
  const std::string& pciBridgePath() const;
  // and the 64-bit identifier of its device.
  std::uint64_t deviceID() const;

 protected:
  // Nothing is known of the device yet, and no volume is filed.
  RAIDHost();

  // For the kinds of host to fill in: what the operations of these names answer.
  std::string _modelName = "invalid";
  std::uint64_t _modelID = 0;
  std::string _vendorName = "invalid";
  std::uint64_t _vendorID = 0;
  std::int32_t _deviceStatus = -1;
  std::uint8_t _bayCount = 0;

  std::map<std::string, RAIDVolume*> _volumes;  // by UUID, byte-wise; one reference per entry
};

}  // namespace RAIDMonitoring
