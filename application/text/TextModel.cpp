#include "application/text/TextModel.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "application/Words.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

bool comesBefore(const MemberSnapshot* a, const MemberSnapshot* b) {
  const int first = a->slot.value_or(-1);
  const int second = b->slot.value_or(-1);
  if (first < 1 || second < 1) return first >= 1 && second < 1;
  return first < second;
}

}  // namespace

std::string clockText(Pelago::Milliseconds time) {
  const auto hours = time / 3600000;
  const std::string rest =
      fmt::format("{:02}:{:02}.{:03}", time / 60000 % 60, time / 1000 % 60, time % 1000);
  return hours > 0 ? fmt::format("{}:{}", hours, rest) : rest;
}

bool isNamed(const DeviceSnapshot& device) {
  return device.status == 0 && !device.vendor.empty() && !device.model.empty();
}

std::string enclosureName(const DeviceSnapshot& device) {
  return isNamed(device) ? device.vendor + " " + device.model : "unknown enclosure";
}

std::string enclosureTitle(const DeviceSnapshot& device, Charset charset) {
  constexpr int longestName = 44;  // leaves room for the rest on a screen of the standard width
  const std::string bays =
      device.bayCount == 0 ? "bays not known" : fmt::format("{} bays", device.bayCount);
  const std::string name = clipped(printable(enclosureName(device), charset), longestName, charset);
  return fmt::format("{}, {}, {}", name, bays, hexadecimal(device.uid));
}

std::string conditionOf(const VolumeSnapshot& volume) {
  return wordFor(volume.level) + (" " + wordsFor(volume.state));
}

std::string nameOf(const VolumeSnapshot& volume) {
  return volume.name.empty() ? volume.uuid : volume.name;
}

std::string wordsFor(RAIDVolumeState state) {
  return state == VolumeCrossDevice ? "cross device" : wordFor(state);
}

std::string wordsFor(MemberState state) {
  return state == MemberNotFound ? "absent" : wordFor(state);
}

std::string shortened(const std::string& uuid) { return uuid.substr(0, uuid.find('-')); }

std::vector<const MemberSnapshot*> membersByBay(const VolumeSnapshot& volume) {
  std::vector<const MemberSnapshot*> members;
  for (const MemberSnapshot& member : volume.members)
    members.push_back(&member);
  std::stable_sort(members.begin(), members.end(), comesBefore);
  return members;
}

const char* absenceOf(const DeviceSnapshot& device) {
  return device.bridge.empty() ? "Coming up: its disks cannot be seen yet." : "No RAID volumes.";
}

}  // namespace Program
