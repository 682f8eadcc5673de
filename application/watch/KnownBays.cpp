#include "application/watch/KnownBays.h"

#include <algorithm>
#include <utility>

namespace Program {
namespace {

bool comesBefore(const DiskNews& a, const DiskNews& b) {
  if (a.bay < 1 || b.bay < 1) return a.bay >= 1 && b.bay < 1;
  return a.bay < b.bay;
}

// Two disks of a volume may claim to be the same one; which of them was where can't be told later.
bool isAmbiguous(const VolumeSnapshot& volume, const MemberSnapshot& member) {
  return std::count_if(volume.members.begin(), volume.members.end(),
                       [&member](const auto& other) { return other.uuid == member.uuid; }) > 1;
}

}  // namespace

// A disk that works has a bay, and who can't tell which must not guess: only of one that is gone
// the former bay is worth knowing.
DiskNews KnownBays::newsOf(const MemberSnapshot& member, int knownBay) {
  DiskNews disk;
  disk.uuid = member.uuid;
  disk.state = member.state;
  disk.bay = member.slot.value_or(-1);
  const bool gone = !member.slot || member.state != RAIDMonitoring::MemberOnline;
  if (disk.bay < 1 && knownBay >= 1 && gone) {
    disk.bay = knownBay;
    disk.former = true;
  }
  return disk;
}

void KnownBays::compare(DiskNews& disk, const Disk* known, int knownBay) {
  if (known == nullptr) {
    disk.kind = DiskNews::Kind::Added;
  } else if (disk.state != known->state) {
    disk.kind = DiskNews::Kind::State;
  } else if (disk.bay >= 1 && knownBay >= 1 && disk.bay != knownBay) {
    disk.kind = DiskNews::Kind::Moved;
    disk.from = knownBay;
  }
}

// The bay of one that was absent has been concluded, which proves wrong if it is elsewhere now.
bool KnownBays::wasSeen(const Disk& known, const MemberSnapshot& member) {
  return known.state != RAIDMonitoring::MemberNotFound ||
         member.state == RAIDMonitoring::MemberNotFound;
}

std::vector<DiskNews> KnownBays::learn(const VolumeEvent& event) {
  Volume& volume = _volumes[event.volume.uuid];
  const bool updated = event.kind == VolumeEvent::Kind::Updated && volume.told;
  const bool sameEnclosure = volume.enclosure == event.enclosure.uid;
  Disks after;
  std::vector<DiskNews> news;
  for (const MemberSnapshot& member : event.volume.members) {
    const auto found = volume.disks.find(member.uuid);
    const Disk* known = found == volume.disks.end() ? nullptr : &found->second;
    const bool twins = isAmbiguous(event.volume, member) || (known != nullptr && known->ambiguous);
    const bool isKnown = known != nullptr && sameEnclosure && !twins && wasSeen(*known, member);
    const int knownBay = isKnown ? known->bay : -1;
    news.push_back(newsOf(member, knownBay));
    if (updated && !twins) compare(news.back(), known, knownBay);
    after[member.uuid] = {member.state, news.back().bay, isAmbiguous(event.volume, member)};
  }
  if (updated) addRemoved(news, volume.disks, after, sameEnclosure);
  volume = {event.enclosure.uid, true, std::move(after)};
  if (event.kind == VolumeEvent::Kind::Disappeared) _volumes.erase(event.volume.uuid);
  std::stable_sort(news.begin(), news.end(), comesBefore);
  return news;
}

void KnownBays::addRemoved(std::vector<DiskNews>& news, const Disks& before, const Disks& after,
                           bool sameEnclosure) {
  for (const auto& [uuid, disk] : before) {
    if (after.count(uuid) != 0) continue;
    const int bay = sameEnclosure && !disk.ambiguous ? disk.bay : -1;
    news.push_back({uuid, disk.state, bay, bay >= 1, DiskNews::Kind::Removed, -1});
  }
}

}  // namespace Program
