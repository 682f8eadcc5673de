#pragma once

#include <string>

#include "RAIDMonitoringExport.h"
#include "model/RAIDMember.h"
#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

// A member of a software-RAID set of the system's own kind, read from its entry in the registry.
//
// Ownership: as any member. Registry entries are held only inside the operations.
// Thread:    the event thread only.
// Failure:   a member whose entry can't be found has the state MemberNotFound and keeps its path;
//            failures are logged, nothing throws on purpose.
class RAIDMONITORING_EXPORT AppleRAIDMember : public RAIDMember {
 public:
  // Reads the member at once, beneath the bridge of its volume's host.
  AppleRAIDMember(RAIDVolume* volume, std::string uuid);
  ~AppleRAIDMember() override;

  void refresh() override;

  // Where the member was last seen: its path in the service plane, else the path of its disk's port
  // with the port's location; empty when neither could be read.
  const std::string& registryPath() const { return _registryPath; }

  // The UUID of the member that an entry stands for; empty when it has none.
  static std::string UUIDFromEntry(io_registry_entry_t entry);

  // The member's entry, with one reference for the caller, or 0. Two searches, for the first sight
  // and for every later one, which differ on purpose: see AppleRAIDMember.cpp.
  io_registry_entry_t findRegistryEntry() const;
  io_registry_entry_t entryFromUUID() const;

  // Reads state and path; the entry stays the caller's.
  void readProperties(io_registry_entry_t entry);

 private:
  std::string _registryPath;
};

}  // namespace RAIDMonitoring
