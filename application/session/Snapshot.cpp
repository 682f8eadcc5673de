#include "application/session/Snapshot.h"

#include "model/AppleRAIDMember.h"
#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"

namespace Program {

using RAIDMonitoring::AppleRAIDMember;
using RAIDMonitoring::RAIDHost;
using RAIDMonitoring::RAIDMember;
using RAIDMonitoring::RAIDVolume;

namespace {

MemberSnapshot memberOf(const RAIDMember& member) {
  MemberSnapshot snapshot;
  snapshot.uuid = member.uuid();
  snapshot.state = member.state();
  const auto* apple = dynamic_cast<const AppleRAIDMember*>(&member);
  if (apple != nullptr) snapshot.path = apple->registryPath();
  return snapshot;
}

}  // namespace

VolumeSnapshot volumeWithoutSlots(const RAIDVolume& volume, std::uint64_t device) {
  VolumeSnapshot snapshot;
  snapshot.uuid = volume.uuid();
  snapshot.name = volume.name();
  snapshot.level = volume.level();
  snapshot.state = volume.state();
  snapshot.device = device;
  for (const RAIDMember* member : volume.members())
    snapshot.members.push_back(memberOf(*member));
  return snapshot;
}

VolumeSnapshot volumeWithSlots(const RAIDVolume& volume) {
  RAIDHost& host = *volume.host();
  VolumeSnapshot snapshot = volumeWithoutSlots(volume, host.deviceID());
  auto place = snapshot.members.begin();
  for (RAIDMember* member : volume.members())
    (place++)->slot = host.locationOfMember(member, true);
  return snapshot;
}

DeviceSnapshot deviceOf(const RAIDHost& host) {
  DeviceSnapshot snapshot;
  snapshot.uid = host.deviceID();
  snapshot.vendor = host.vendorName();
  snapshot.vendorID = host.vendorID();
  snapshot.model = host.modelName();
  snapshot.modelID = host.modelID();
  snapshot.status = host.deviceStatus();
  snapshot.bayCount = host.bayCount();
  snapshot.bridge = host.pciBridgePath();
  return snapshot;
}

EnclosureVolumes volumesOf(const RAIDHost& host) {
  EnclosureVolumes enclosure;
  enclosure.device = deviceOf(host);
  for (const RAIDVolume* volume : host.raidVolumes()) {
    enclosure.volumes.push_back(volumeWithSlots(*volume));
  }
  return enclosure;
}

EnclosureSlots slotsOf(RAIDHost& host) {
  EnclosureSlots enclosure;
  enclosure.device = deviceOf(host);
  for (const RAIDVolume* volume : host.raidVolumes()) {
    enclosure.volumes.push_back(volumeWithoutSlots(*volume, host.deviceID()));
    for (RAIDMember* member : volume->members()) {
      MemberLocation location;
      location.slot = host.locationOfMember(member, false);
      location.inferred = host.locationOfMember(member, true);
      enclosure.locations.push_back(location);
    }
  }
  int bay = 1;
  for (int& answer : enclosure.answers)
    answer = host.locationOfNotMember(bay++);
  return enclosure;
}

}  // namespace Program
