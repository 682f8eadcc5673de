#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/MemberState.h"
#include "model/RAIDLevel.h"
#include "model/RAIDVolumeState.h"

namespace RAIDMonitoring {
class RAIDHost;
class RAIDVolume;
}  // namespace RAIDMonitoring

namespace Program {

// What the model says at one moment, copied out of it for printing.

struct MemberSnapshot {
  std::string uuid;
  RAIDMonitoring::MemberState state = RAIDMonitoring::MemberUnknown;
  std::string path;
  std::optional<int> slot;  // none when it was not asked for
};

struct VolumeSnapshot {
  std::string uuid;
  std::string name;
  RAIDMonitoring::RAIDLevel level = RAIDMonitoring::LevelUnknown;
  RAIDMonitoring::RAIDVolumeState state = RAIDMonitoring::VolumeUnknown;
  std::uint64_t device = 0;
  std::vector<MemberSnapshot> members;
};

struct DeviceSnapshot {
  std::uint64_t uid = 0;
  std::string vendor;
  std::uint64_t vendorID = 0;
  std::string model;
  std::uint64_t modelID = 0;
  std::int32_t status = 0;
  unsigned bayCount = 0;
  std::string bridge;
};

struct EnclosureVolumes {
  DeviceSnapshot device;
  std::vector<VolumeSnapshot> volumes;
};

struct MemberLocation {
  int slot = -1;
  int inferred = -1;
};

struct EnclosureSlots {
  static constexpr int BaysAsked = 6;

  DeviceSnapshot device;
  std::vector<VolumeSnapshot> volumes;    // members without slots
  std::vector<MemberLocation> locations;  // of each member of each volume, in order
  std::array<int, BaysAsked> answers{};   // for the bays from 1 on
};

// Asks the host for each member's slot, one member after the other, with inference.
VolumeSnapshot volumeWithSlots(const RAIDMonitoring::RAIDVolume& volume);

// Does not touch the host, which may be gone: the caller knows the device.
VolumeSnapshot volumeWithoutSlots(const RAIDMonitoring::RAIDVolume& volume, std::uint64_t device);

DeviceSnapshot deviceOf(const RAIDMonitoring::RAIDHost& host);

EnclosureVolumes volumesOf(const RAIDMonitoring::RAIDHost& host);

// Asks for each member without inference and with it, then for each bay.
EnclosureSlots slotsOf(RAIDMonitoring::RAIDHost& host);

}  // namespace Program
