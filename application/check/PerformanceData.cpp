#include "application/check/PerformanceData.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "application/text/TextCharacters.h"
#include "application/text/TextModel.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

constexpr int LongestLabel = 60;

std::size_t onlineIn(const VolumeSnapshot& volume) {
  return static_cast<std::size_t>(
      std::count_if(volume.members.begin(), volume.members.end(),
                    [](const MemberSnapshot& member) { return member.state == MemberOnline; }));
}

struct Counts {
  std::size_t volumesOnline = 0;
  std::size_t disks = 0;
  std::size_t disksOnline = 0;
};

// A set that two enclosures report is one, and as good as the worse report. An entry per UUID.
std::map<std::string, VolumeSnapshot> setsIn(const std::vector<EnclosureVolumes>& enclosures) {
  std::map<std::string, VolumeSnapshot> sets;
  for (const EnclosureVolumes& enclosure : enclosures) {
    for (const VolumeSnapshot& volume : enclosure.volumes) {
      const auto [set, isNew] = sets.emplace(volume.uuid, volume);
      if (!isNew && set->second.state == VolumeOnline) set->second = volume;
    }
  }
  return sets;
}

Counts countsOf(const std::map<std::string, VolumeSnapshot>& sets) {
  Counts counts;
  for (const auto& [uuid, volume] : sets) {
    if (volume.state == VolumeOnline) ++counts.volumesOnline;
    counts.disks += volume.members.size();
    counts.disksOnline += onlineIn(volume);
  }
  return counts;
}

// Names that several volumes bear are told apart by the UUID, and what is the same even then by a
// number: a label that comes twice would hide one of the two.
std::string labelFor(const VolumeSnapshot& volume, const std::map<std::string, int>& bearers,
                     std::set<std::string>& taken) {
  const std::string name = nameOf(volume);
  const std::string base = bearers.at(name) > 1 ? name + " " + volume.uuid : name;
  std::string label = performanceLabel(base);
  for (int number = 2; !taken.insert(label).second; ++number)
    label = performanceLabel(fmt::format("{} {}", number, base));
  return label;
}

std::string dataOf(const std::map<std::string, VolumeSnapshot>& sets) {
  std::map<std::string, int> bearers;
  for (const auto& [uuid, volume] : sets)
    ++bearers[nameOf(volume)];
  std::set<std::string> taken;
  for (const char* ours : {"enclosures", "volumes", "volumes_online", "disks", "disks_online"})
    taken.insert(performanceLabel(ours));
  std::string data;
  for (const auto& [uuid, volume] : sets) {
    data += fmt::format(" {}={};;;0;{}", labelFor(volume, bearers, taken), onlineIn(volume),
                        volume.members.size());
  }
  return data;
}

}  // namespace

std::string performanceLabel(const std::string& name) {
  std::string label = clipped(printable(name, Charset::Unicode), LongestLabel, Charset::Unicode);
  for (char& c : label) {
    if (c == '\'' || c == '=' || c == '|') c = '_';
  }
  return "'" + label + "'";
}

std::string performanceData(const std::vector<EnclosureVolumes>& enclosures,
                            const Expectations& expected) {
  const auto sets = setsIn(enclosures);
  const Counts counts = countsOf(sets);
  const std::string least = expected.volumes ? fmt::format("{}:", *expected.volumes) : "";
  return fmt::format(
             "enclosures={};;;0 volumes={};;{};0 volumes_online={};;;0;{} disks={};;;0 "
             "disks_online={};;;0;{}",
             enclosures.size(), sets.size(), least, counts.volumesOnline, sets.size(), counts.disks,
             counts.disksOnline, counts.disks) +
         dataOf(sets);
}

}  // namespace Program
