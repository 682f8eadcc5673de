#include <map>
#include <string>
#include <vector>

#include "model/RAIDHost.h"
#include "model/RAIDMember.h"
#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Logger.h"

namespace RAIDMonitoring {

namespace {

using MemberStates = std::map<std::string, MemberState>;
using VolumeStates = std::map<std::string, RAIDVolumeState>;

VolumeStates statesOfVolumes(const std::vector<RAIDVolume*>& volumes) {
  VolumeStates states;
  for (const RAIDVolume* volume : volumes)
    states[volume->uuid()] = volume->state();
  return states;
}

// Of every member of every volume of a host; where two share a UUID, the last one's.
MemberStates statesOfMembers(const std::vector<RAIDVolume*>& volumes) {
  MemberStates states;
  for (const RAIDVolume* volume : volumes) {
    for (const RAIDMember* member : volume->members())
      states[member->uuid()] = member->state();
  }
  return states;
}

// What a host's volumes and members were in before it was refreshed, and its members after it.
struct HostStates {
  VolumeStates oldVolumes;
  MemberStates oldMembers;
  MemberStates newMembers;
};

// How many members changed their state. Members that are there only before or only after the
// refresh are not compared.
int changedMembers(const HostStates& states) {
  int changed = 0;
  for (const auto& [uuid, state] : states.newMembers) {
    const auto old = states.oldMembers.find(uuid);
    if (old != states.oldMembers.end() && old->second != state) ++changed;
  }
  return changed;
}

}  // namespace

// One refresh of all hosts: which volumes it has met, and which it has to report at its end.
class RAIDMONITORING_NO_EXPORT RAIDMonitor::Cycle {
 public:
  explicit Cycle(RAIDMonitor& monitor) : _monitor(monitor) {}

  void lookAt(RAIDHost& host);
  void reportUpdates();
  void withdrawUnseen();

 private:
  void compare(RAIDVolume* volume, HostStates& states);
  void compareAnnounced(RAIDVolume* volume, HostStates& states);
  void compareMembers(RAIDVolume* volume, const HostStates& states);
  void countAsSeen(RAIDVolume* volume);

  RAIDMonitor& _monitor;
  std::map<std::string, RAIDVolume*> _seenVolumes;     // the first one met under each UUID
  std::map<std::string, RAIDVolume*> _updatedVolumes;  // the last one entered under each UUID
};

void RAIDMonitor::refresh() {
  Cycle cycle(*this);
  for (RAIDHost* host : _hosts)
    cycle.lookAt(*host);
  cycle.reportUpdates();
  cycle.withdrawUnseen();
}

void RAIDMonitor::Cycle::lookAt(RAIDHost& host) {
  HostStates states;
  std::vector<RAIDVolume*> volumes = host.raidVolumes();
  states.oldVolumes = statesOfVolumes(volumes);
  states.oldMembers = statesOfMembers(volumes);
  host.refresh();
  volumes = host.raidVolumes();
  states.newMembers = statesOfMembers(volumes);
  for (RAIDVolume* volume : volumes) {
    compare(volume, states);
    countAsSeen(volume);
  }
}

void RAIDMonitor::Cycle::compare(RAIDVolume* volume, HostStates& states) {
  if (_monitor._volumes.count(volume->uuid()) != 0) {
    compareAnnounced(volume, states);
  } else if (volume->state() != VolumeUnknown) {
    _monitor.notifyRAIDApparition(volume);
  }
}

void RAIDMonitor::Cycle::compareAnnounced(RAIDVolume* volume, HostStates& states) {
  // An announced volume that is new on this host counts as one that was VolumeFailed.
  const RAIDVolumeState oldState = states.oldVolumes[volume->uuid()];
  const RAIDVolumeState newState = volume->state();
  if (oldState == newState) {
    if (newState == VolumeDegraded || newState == VolumeOffline) compareMembers(volume, states);
  } else if (newState == VolumeUnknown) {
    _monitor.notifyRAIDDisparition(volume);
  } else {
    // Told twice on purpose: here and at the end of the cycle.
    _updatedVolumes[volume->uuid()] = volume;
    _monitor.tell(&RAIDMonitorClient::RAIDUpdated, volume);
  }
}

// Looks at the members of all the host's volumes, on purpose, not at this one's alone; and says so
// once for every member that changed.
void RAIDMonitor::Cycle::compareMembers(RAIDVolume* volume, const HostStates& states) {
  for (int left = changedMembers(states); left > 0; --left) {
    Pelago::Logger::Info("Quovex Raid Monitor",
                         " RAIDMonitor::refresh() - New error detected on RAID.");
    _updatedVolumes[volume->uuid()] = volume;
  }
}

void RAIDMonitor::Cycle::countAsSeen(RAIDVolume* volume) {
  if (_seenVolumes.emplace(volume->uuid(), volume).second) return;
  volume->setState(VolumeCrossDevice);  // another host has reported the set in this cycle
  _updatedVolumes[volume->uuid()] = volume;
}

void RAIDMonitor::Cycle::reportUpdates() {
  for (const auto& [uuid, volume] : _updatedVolumes) {
    _monitor.tell(&RAIDMonitorClient::RAIDUpdated, volume);
  }
}

// Collected first: the withdrawal erases from the map that is looked through.
void RAIDMonitor::Cycle::withdrawUnseen() {
  std::vector<RAIDVolume*> unseen;
  for (const auto& [uuid, volume] : _monitor._volumes) {
    if (_seenVolumes.count(uuid) == 0) unseen.push_back(volume);
  }
  for (RAIDVolume* volume : unseen)
    _monitor.notifyRAIDDisparition(volume);
}

}  // namespace RAIDMonitoring
