#include "application/report/Incidents.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "application/report/Ranks.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

constexpr int RankOfGone = 4;
constexpr int RankOfUnplugged = 4;
constexpr int RankOfShortOfADisk = 2;

using VolumeKey = std::pair<std::uint64_t, std::string>;  // device and UUID

const Picture* pictureIn(const Story::Frame& frame, std::uint64_t device) {
  for (const auto& picture : frame.enclosures)
    if (picture->uid == device) return picture.get();
  return nullptr;
}

const PicturedVolume* volumeIn(const Picture& picture, const std::string& uuid) {
  for (const PicturedVolume& volume : picture.volumes)
    if (volume.uuid == uuid) return &volume;
  return nullptr;
}

bool allAreIn(const Picture& picture, const std::vector<PicturedVolume>& volumes) {
  return std::all_of(volumes.begin(), volumes.end(), [&picture](const PicturedVolume& volume) {
    return volumeIn(picture, volume.uuid) != nullptr;
  });
}

bool isWithoutDisk(const PicturedMember& member) {
  return rankOf(member.state) >= rankOf(MemberOffline);
}

// Not online, or online without one of its disks.
bool isInTrouble(const PicturedVolume& volume) {
  return rankOf(volume.state) > 0 ||
         std::any_of(volume.members.begin(), volume.members.end(), isWithoutDisk);
}

// Each at its worst.
void noteMember(std::vector<PicturedMember>& members, const PicturedMember& member) {
  if (member.state == MemberOnline) return;
  const auto known = std::find_if(members.begin(), members.end(), [&member](const auto& other) {
    return other.uuid == member.uuid;
  });
  if (known == members.end()) {
    members.push_back(member);
  } else if (rankOf(member.state) > rankOf(known->state)) {
    *known = member;
  }
}

// Goes through the frames, and keeps what has begun and not ended yet.
class Search {
 public:
  std::vector<Incident> found;

  void lookAt(const Story::Frame& frame) {
    _frame = &frame;
    for (const auto& picture : frame.enclosures)
      lookAt(*picture);
    for (auto& [device, last] : _enclosures) {
      const Picture* picture = pictureIn(frame, device);
      if (picture == nullptr && last.picture != nullptr) unplug(device, last);
      last.picture = picture;
    }
    _first = false;
  }

 private:
  struct Enclosure {
    const Picture* picture = nullptr;      // of the frame before; null when it was not there
    std::optional<std::size_t> unplugged;  // the incident, until every volume is back
    std::map<std::string, PicturedVolume> volumes;  // all that it should have, by UUID
  };

  Incident& begin(Incident::Kind kind, const Picture& picture) {
    Incident incident;
    incident.kind = kind;
    incident.device = picture.uid;
    incident.enclosure = picture.name;
    incident.from = _frame->time;
    incident.fromStart = _first;
    found.push_back(std::move(incident));
    return found.back();
  }

  void lookAt(const Picture& picture) {
    Enclosure& enclosure = _enclosures[picture.uid];
    if (enclosure.unplugged && allAreIn(picture, found[*enclosure.unplugged].volumes)) {
      found[*enclosure.unplugged].to = _frame->time;
      enclosure.unplugged.reset();
    }
    for (const PicturedVolume& volume : picture.volumes) {
      enclosure.volumes[volume.uuid] = volume;
      lookAt(picture, volume);
    }
    for (const auto& [uuid, volume] : enclosure.volumes)
      if (volumeIn(picture, uuid) == nullptr) miss(picture, volume);
  }

  void lookAt(const Picture& picture, const PicturedVolume& volume) {
    const VolumeKey key{picture.uid, volume.uuid};
    end(_gone, key, false);
    if (!isInTrouble(volume)) {
      end(_broken, key, false);
      return;
    }
    const auto [place, isNew] = _broken.emplace(key, found.size());
    if (isNew) begin(Incident::Kind::Volume, picture).volumes = {volume};
    Incident& incident = found[place->second];
    if (isNew) incident.worst = volume.state;
    if (volume.state != incident.worst) incident.severalStates = true;
    if (rankOf(volume.state) > rankOf(incident.worst)) incident.worst = volume.state;
    for (const PicturedMember& member : volume.members)
      noteMember(incident.members, member);
  }

  void miss(const Picture& picture, const PicturedVolume& volume) {
    const VolumeKey key{picture.uid, volume.uuid};
    end(_broken, key, false);
    if (_gone.emplace(key, found.size()).second) {
      begin(Incident::Kind::Gone, picture).volumes = {volume};
    }
  }

  void unplug(std::uint64_t device, Enclosure& enclosure) {
    std::vector<PicturedVolume> volumes;
    for (const PicturedVolume& volume : enclosure.picture->volumes) {
      end(_broken, {device, volume.uuid}, true);
      volumes.push_back(volume);
    }
    enclosure.volumes.clear();
    // Unplugged again before everything was back: the same incident goes on.
    if (enclosure.unplugged) return;
    enclosure.unplugged = found.size();
    begin(Incident::Kind::Unplugged, *enclosure.picture).volumes = std::move(volumes);
  }

  void end(std::map<VolumeKey, std::size_t>& open, const VolumeKey& key, bool byUnplugging) {
    const auto place = open.find(key);
    if (place == open.end()) return;
    found[place->second].to = _frame->time;
    found[place->second].endedByUnplugging = byUnplugging;
    open.erase(place);
  }

  const Story::Frame* _frame = nullptr;
  bool _first = true;
  std::map<std::uint64_t, Enclosure> _enclosures;
  std::map<VolumeKey, std::size_t> _broken;  // incidents that go on
  std::map<VolumeKey, std::size_t> _gone;
};

}  // namespace

int rankOf(const Incident& incident) {
  switch (incident.kind) {
    case Incident::Kind::Gone:
      return RankOfGone;
    case Incident::Kind::Unplugged:
      return RankOfUnplugged;
    case Incident::Kind::Volume:
      break;
  }
  return incident.worst == VolumeOnline ? RankOfShortOfADisk : rankOf(incident.worst);
}

std::vector<Incident> incidentsOf(const Story& story) {
  Search search;
  for (const Story::Frame& frame : story.frames)
    search.lookAt(frame);
  return std::move(search.found);
}

const Incident* worstOf(const std::vector<Incident>& incidents) {
  const auto before = [](const Incident& a, const Incident& b) {
    return std::make_tuple(a.to.has_value(), -rankOf(a), a.from) <
           std::make_tuple(b.to.has_value(), -rankOf(b), b.from);
  };
  const auto worst = std::min_element(incidents.begin(), incidents.end(), before);
  return worst == incidents.end() ? nullptr : &*worst;
}

}  // namespace Program
