#include "application/report/EventLines.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "application/Words.h"
#include "application/report/Ranks.h"
#include "application/report/StoryWords.h"
#include "application/text/TextModel.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

using Gravity = EventLine::Gravity;
using Happening = Story::Happening;
using Mark = EventLine::Mark;

bool sameMember(const MemberSnapshot& a, const MemberSnapshot& b) {
  return a.uuid == b.uuid && a.state == b.state && a.slot == b.slot;
}

// Told again, to the letter.
bool sameReport(const Story::Event& a, const Story::Event& b) {
  return a.time == b.time && a.what == b.what && a.device == b.device &&
         a.volume.uuid == b.volume.uuid && a.volume.name == b.volume.name &&
         a.volume.state == b.volume.state && a.volume.level == b.volume.level &&
         std::equal(a.volume.members.begin(), a.volume.members.end(), b.volume.members.begin(),
                    b.volume.members.end(), sameMember);
}

Gravity gravityOf(RAIDVolumeState state) {
  const int rank = rankOf(state);
  if (rank == 0) return Gravity::Good;
  return rank < rankOf(VolumeOffline) ? Gravity::Uneasy : Gravity::Bad;
}

const Picture* pictureIn(const Story::Frame* frame, std::uint64_t device) {
  if (frame == nullptr) return nullptr;
  for (const auto& picture : frame->enclosures)
    if (picture->uid == device) return picture.get();
  return nullptr;
}

// The bay of each member as a frame shows it: a report has no more than the library's answer.
class MemberBays {
 public:
  MemberBays(const Story::Frame* frame, const Story::Event& event) {
    const Picture* picture = pictureIn(frame, event.device);
    if (picture == nullptr) return;
    for (const PicturedVolume& volume : picture->volumes) {
      if (volume.uuid != event.volume.uuid) continue;
      for (const PicturedMember& member : volume.members)
        _members[member.uuid] = member;
    }
  }

  // "bay 2", "bay 4, was" of a disk that is not seen any more
  std::string of(const std::string& member) const {
    const auto found = _members.find(member);
    if (found == _members.end() || found->second.sight == Sight::Nowhere) return "bay not known";
    const std::string bay = "bay " + std::to_string(found->second.bay);
    if (found->second.sight == Sight::Remembered) return bay + ", was";
    return found->second.sight == Sight::Inferred ? bay + ", inferred" : bay;
  }

  std::string list() const {
    std::vector<int> bays;
    for (const auto& [uuid, member] : _members)
      if (member.sight != Sight::Nowhere) bays.push_back(member.bay);
    return bayList(bays);
  }

 private:
  std::map<std::string, PicturedMember> _members;
};

class Writer {
 public:
  explicit Writer(const Story& story) : _story(story) {
    for (const Story::Frame& frame : story.frames)
      for (const auto& picture : frame.enclosures)
        if (picture->up || _names.count(picture->uid) == 0) _names[picture->uid] = picture->name;
  }

  std::vector<EventLine> lines() {
    // First, because of what happens at one moment the bays are the cause.
    for (std::size_t place = 1; place < _story.frames.size(); ++place)
      compareBays(_story.frames[place - 1], _story.frames[place]);
    const Story::Event* last = nullptr;
    for (const Story::Event& event : _story.events) {
      if (last == nullptr || !sameReport(*last, event)) write(event);
      last = &event;
    }
    std::stable_sort(_lines.begin(), _lines.end(),
                     [](const EventLine& a, const EventLine& b) { return a.time < b.time; });
    return std::move(_lines);
  }

 private:
  void add(Story::Moment time, Mark mark, Gravity gravity, std::string text, std::uint64_t device) {
    _lines.push_back({time, mark, gravity, std::move(text), nameOfDevice(device)});
  }

  std::string nameOfDevice(std::uint64_t device) const {
    const auto name = _names.find(device);
    return name == _names.end() ? hexadecimal(device) : shownName(name->second);
  }

  void write(const Story::Event& event) {
    switch (event.what) {
      case Happening::DeviceAppeared:
        add(event.time, Mark::New, Gravity::Plain,
            event.time == 0 ? "Enclosure is connected" : "Enclosure was plugged in", event.device);
        break;
      case Happening::DeviceDisappeared:
        _unplugged = {event.time, event.device};
        add(event.time, Mark::Gone, Gravity::Bad, "Enclosure was unplugged", event.device);
        _unpluggedLine = _lines.size() - 1;
        break;
      case Happening::VolumeDisappeared:
        writeEnd(event);
        break;
      case Happening::VolumeAppeared:
      case Happening::VolumeUpdated:
        writeState(event);
        break;
    }
  }

  const Story::Frame* frameBefore(Story::Moment time) const { return _story.frameAt(time - 1); }

  // That of an enclosure that goes, or a line of its own.
  void writeEnd(const Story::Event& event) {
    const std::string bays = MemberBays(frameBefore(event.time), event).list();
    std::string text = shownName(nameOf(event.volume)) + (bays.empty() ? "" : " (" + bays + ")");
    _told.erase(event.volume.uuid);
    if (_unplugged == std::make_pair(event.time, event.device)) {
      std::string& line = _lines[_unpluggedLine].text;
      line += (line.find(" with it went ") == std::string::npos ? "; with it went " : ", ") + text;
    } else {
      add(event.time, Mark::Gone, Gravity::Bad, text + " is gone", event.device);
    }
  }

  void writeState(const Story::Event& event) {
    const VolumeSnapshot& volume = event.volume;
    const MemberBays bays(_story.frameAt(event.time), event);
    const bool isNew = event.what == Happening::VolumeAppeared;
    std::string text = fmt::format("{}: {} {}", shownName(nameOf(volume)), wordFor(volume.level),
                                   wordsFor(volume.state));
    const auto told = _told.find(volume.uuid);
    const VolumeSnapshot* before = told == _told.end() || isNew ? nullptr : &told->second;
    if (before != nullptr && before->state != volume.state) {
      text += ", was " + wordsFor(before->state);
    }
    if (isNew && !bays.list().empty()) text += ", " + bays.list();
    for (const MemberSnapshot& member : volume.members)
      text += memberNews(member, before, bays);
    _told[volume.uuid] = volume;
    add(event.time, isNew ? Mark::New : Mark::Now, gravityOf(volume.state), text, event.device);
  }

  // Of a volume that is new, what is not as it should be; otherwise what has changed.
  static std::string memberNews(const MemberSnapshot& member, const VolumeSnapshot* before,
                                const MemberBays& bays) {
    MemberState last = MemberOnline;
    if (before != nullptr) {
      for (const MemberSnapshot& other : before->members)
        if (other.uuid == member.uuid) last = other.state;
    }
    if (member.state == last) return "";
    return fmt::format("; {}: disk {}", bays.of(member.uuid), wordsFor(member.state));
  }

  void compareBays(const Story::Frame& before, const Story::Frame& after) {
    for (const auto& picture : after.enclosures) {
      const Picture* last = pictureIn(&before, picture->uid);
      if (last == nullptr || last == picture.get() || !last->up || !picture->up) continue;
      noteBays(after.time, *picture, turned(*last, *picture, true), "its disk is gone",
               "their disks are gone");
      noteBays(after.time, *picture, turned(*last, *picture, false), "there is a disk now",
               "there are disks now");
    }
  }

  // The bays in which a disk was seen, or not, and now it is the other way.
  static std::vector<int> turned(const Picture& before, const Picture& after, bool seenBefore) {
    std::vector<int> bays;
    for (std::size_t bay = 0; bay < std::min(before.disks.size(), after.disks.size()); ++bay) {
      if (before.disks[bay] == seenBefore && after.disks[bay] != seenBefore) {
        bays.push_back(static_cast<int>(bay) + 1);
      }
    }
    return bays;
  }

  // They may have been pulled, or have lost their power or their bridge: who is to say.
  void noteBays(Story::Moment time, const Picture& picture, const std::vector<int>& bays,
                const char* one, const char* several) {
    if (bays.empty()) return;
    std::string text = bayList(bays) + ": " + (bays.size() == 1 ? one : several);
    text.front() = 'B';
    add(time, Mark::Seen, Gravity::Plain, std::move(text), picture.uid);
  }

  const Story& _story;
  std::map<std::uint64_t, std::string> _names;
  std::map<std::string, VolumeSnapshot> _told;  // by UUID: what was last reported
  std::pair<Story::Moment, std::uint64_t> _unplugged{-1, 0};
  std::size_t _unpluggedLine = 0;
  std::vector<EventLine> _lines;
};

}  // namespace

std::vector<EventLine> eventLinesOf(const Story& story) { return Writer(story).lines(); }

}  // namespace Program
