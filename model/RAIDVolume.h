#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "RAIDMonitoringExport.h"
#include "model/RAIDLevel.h"
#include "model/RAIDVolumeState.h"
#include "platform/pelago/Object.h"
#include "platform/pelago/Reference.h"
#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

class AppleRAIDMember;
class RAIDHost;
class RAIDMember;

// One software-RAID set found beneath a host. It knows itself by the set's UUID and finds its
// registry entry again, by that UUID, every time it is refreshed.
//
// Ownership: the host keeps one reference while the volume is filed, the monitor one while it is
//            announced; the volume keeps one on every member. The way back to the host keeps none:
//            a volume may outlive its host.
// Thread:    the event thread only; nothing here locks.
// Failure:   a set that has left the registry reads as VolumeFailed and keeps everything else;
//            failures are logged, nothing throws on purpose.
//
// \code
// #include <ostream>
//
// #include "model/RAIDHost.h"
// #include "model/RAIDMember.h"
//
// // The bays whose disks have failed: those that somebody has to pull.
// void printFailed(std::ostream& out, const RAIDMonitoring::RAIDVolume& volume) {
//   for (RAIDMonitoring::RAIDMember* member : volume.members()) {
//     if (member->state() != RAIDMonitoring::MemberFailed) continue;
//     const int bay = volume.host()->locationOfMember(member, true);
//     out << volume.name() << ": " << member->uuid();
//     bay == -1 ? out << ", in an unknown bay\n" : out << ", bay " << bay << '\n';
//   }
// }
// \endcode
class RAIDMONITORING_EXPORT RAIDVolume : public Pelago::Object {
 public:
  // Reads the set at once.
  RAIDVolume(RAIDHost* host, std::string uuid);
  ~RAIDVolume() override;

  // Volumes lie in memory in the order of their making (AscendingStorage.h).
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) noexcept;

  // Finds the entry again, reads its properties and brings the members up to date.
  void refresh();

  // The members in ascending order of their UUIDs. No references are taken.
  std::vector<RAIDMember*> members() const;

  // What the set is known by, everywhere and for good.
  const std::string& uuid() const { return _uuid; }
  // What people call it, in UTF-8; whoever can rename a volume decides what stands there.
  const std::string& name() const { return _name; }
  // What the last reading has found.
  RAIDLevel level() const { return _level; }
  RAIDVolumeState state() const { return _state; }
  // Never null; but see above: a volume that is kept may outlive it.
  RAIDHost* host() const { return _host; }

  // For the refresh cycle and the search for sets, which mark sets that span devices. Storing
  // VolumeUnknown makes the monitor withdraw the volume and give back a reference: do that only
  // with a reference of your own on it.
  void setState(RAIDVolumeState state) { _state = state; }

  // The UUID of the set that an entry stands for; empty when it has none.
  static std::string UUIDFromEntry(io_registry_entry_t entry);

  // The set's entry, with one reference for the caller, or 0.
  io_registry_entry_t entryFromUUID() const;

  // All that the entry says, the UUID included.
  void readProperties(io_registry_entry_t entry);

  // One member per UUID that the entry lists, in its order, each with one reference for the caller.
  // Members that are filed already are refreshed; new ones are made, and not filed.
  std::vector<RAIDMember*> findMembers(io_registry_entry_t entry);

  // Files the member and takes a reference on it, unless its UUID is filed already.
  void addRAIDMember(RAIDMember* member);

  // Unfiles what is filed under the member's UUID and gives the member's reference back, if
  // anything is filed there.
  void removeRAIDMember(RAIDMember* member);

 private:
  void readDescription(io_registry_entry_t entry);
  bool liesOutsideBridge(const AppleRAIDMember& member) const;
  Pelago::Reference<RAIDMember> findMember(const std::string& uuid);
  std::vector<Pelago::Reference<RAIDMember>> holdMembers(io_registry_entry_t entry);
  void reconcile(std::vector<Pelago::Reference<RAIDMember>> found);
  void removeAllMembers();

  std::string _uuid;
  std::string _name;
  RAIDLevel _level = LevelUnknown;
  RAIDVolumeState _state = VolumeInitializing;
  RAIDHost* _host;
  std::map<std::string, RAIDMember*> _membersByUUID;  // byte-wise; one reference per entry
};

}  // namespace RAIDMonitoring
