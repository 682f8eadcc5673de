#include "application/check/FindingText.h"

#include <fmt/format.h>

#include <vector>

#include "application/Words.h"
#include "application/text/TextModel.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

// Long enough for any name that a person gives.
constexpr std::size_t LongestName = 200;

std::string shortName(const VolumeSnapshot& volume) {
  const std::string name = nameOf(volume);
  return name.size() <= LongestName ? name : name.substr(0, LongestName) + "...";
}

bool isPlaced(const MemberSnapshot& member) { return member.slot.value_or(-1) >= 1; }

std::string wordOf(MemberState state) {
  switch (state) {
    case MemberNotFound:
      return "missing";
    case MemberStandby:
      return "on standby";
    case MemberUnknown:
      return "in an unknown state";
    default:
      return wordsFor(state);
  }
}

std::string troubleOf(const MemberSnapshot& member) {
  const std::string word = "disk " + wordOf(member.state);
  if (!isPlaced(member)) return word + ", bay not known";
  const char* where = member.state == MemberNotFound ? "from" : "in";
  return fmt::format("{} {} bay {}", word, where, *member.slot);
}

// "bays 1, 2"; empty when none is known.
std::string baysOfAll(const VolumeSnapshot& volume) {
  std::string bays;
  int count = 0;
  for (const MemberSnapshot* member : membersByBay(volume)) {
    if (!isPlaced(*member)) continue;
    bays += (count++ == 0 ? " " : ", ") + std::to_string(*member->slot);
  }
  if (count == 0) return {};
  return (count == 1 ? "bay" : "bays") + bays;
}

std::string troublesOf(const VolumeSnapshot& volume) {
  std::string troubles;
  for (const MemberSnapshot* member : membersByBay(volume)) {
    if (member->state == MemberOnline) continue;
    troubles += ", " + troubleOf(*member);
  }
  if (!troubles.empty()) return troubles;
  const std::string bays = baysOfAll(volume);
  return bays.empty() ? bays : ", " + bays;
}

}  // namespace

std::string countOf(std::size_t count, const char* noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string headlineOf(const VolumeSnapshot& volume, const DeviceSnapshot& device) {
  return fmt::format("{}: {}{} ({} {})", shortName(volume), conditionOf(volume), troublesOf(volume),
                     enclosureName(device), hexadecimal(device.uid));
}

std::string detailsOf(const VolumeSnapshot& volume, const DeviceSnapshot& device) {
  std::string text = shortName(volume) + ": " + conditionOf(volume);
  for (const MemberSnapshot* member : membersByBay(volume)) {
    const std::string disk = isPlaced(*member)
                                 ? fmt::format("bay {}", *member->slot)
                                 : fmt::format("disk {} (bay not known)", shortened(member->uuid));
    text += ", " + disk + " " + wordOf(member->state);
  }
  return text + fmt::format("; {}; {}", enclosureTitle(device), volume.uuid);
}

}  // namespace Program
