#include "application/report/Picture.h"

#include <algorithm>
#include <tuple>

#include "application/text/TextModel.h"

namespace Program {
namespace {

auto partsOf(const PicturedMember& m) { return std::tie(m.uuid, m.state, m.bay, m.sight); }
auto partsOf(const PicturedVolume& v) {
  return std::tie(v.uuid, v.name, v.level, v.state, v.members);
}
auto partsOf(const Picture& p) { return std::tie(p.uid, p.name, p.up, p.disks, p.volumes); }

bool diskIsSeen(const EnclosureSlots& enclosure, std::size_t place) {
  return place < enclosure.answers.size() &&
         enclosure.answers[place] == static_cast<int>(place) + 1;
}

// What a bay is inferred from is the bay of the first other member. Where that one is not seen, the
// library answers places in the list of members instead, which nobody should pull a disk by.
bool isInferable(const VolumeSnapshot& volume, const MemberLocation* locations,
                 const std::string& uuid) {
  for (const MemberSnapshot& other : volume.members) {
    if (other.uuid != uuid) return locations->slot >= 1;
    ++locations;
  }
  return false;
}

}  // namespace

bool operator==(const PicturedMember& a, const PicturedMember& b) {
  return partsOf(a) == partsOf(b);
}
bool operator==(const PicturedVolume& a, const PicturedVolume& b) {
  return partsOf(a) == partsOf(b);
}
bool operator==(const Picture& a, const Picture& b) { return partsOf(a) == partsOf(b); }

Picture PictureTaker::pictureOf(const EnclosureSlots& enclosure) {
  const std::uint64_t device = enclosure.device.uid;
  Picture picture;
  picture.uid = device;
  picture.name = enclosureName(enclosure.device);
  picture.up = !enclosure.device.bridge.empty();
  for (std::size_t place = 0; place < enclosure.device.bayCount; ++place)
    picture.disks.push_back(diskIsSeen(enclosure, place));
  const MemberLocation* locations = enclosure.locations.data();
  for (const VolumeSnapshot& volume : enclosure.volumes) {
    PicturedVolume pictured{volume.uuid, nameOf(volume), volume.level, volume.state, {}};
    const MemberLocation* location = locations;
    for (const MemberSnapshot& member : volume.members) {
      const bool inferable = isInferable(volume, locations, member.uuid);
      pictured.members.push_back(memberOf(device, member, *location++, inferable));
    }
    locations = location;
    picture.volumes.push_back(std::move(pictured));
  }
  return picture;
}

PicturedMember PictureTaker::memberOf(std::uint64_t device, const MemberSnapshot& member,
                                      const MemberLocation& location, bool inferable) {
  PicturedMember pictured{member.uuid, member.state, 0, Sight::Nowhere};
  int& last = _lastBays[{device, member.uuid}];
  if (location.slot >= 1) {
    last = location.slot;
    pictured.bay = location.slot;
    pictured.sight = Sight::Seen;
  } else if (location.inferred >= 1 && inferable) {
    pictured.bay = location.inferred;
    pictured.sight = Sight::Inferred;
  } else if (last >= 1) {
    pictured.bay = last;
    pictured.sight = Sight::Remembered;
  }
  return pictured;
}

}  // namespace Program
