#include "application/report/StoryWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "application/Words.h"
#include "application/report/Ranks.h"
#include "application/text/TextCharacters.h"
#include "application/text/TextModel.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

constexpr int LongestName = 120;

// U+2068 and U+2069: whatever is right to left within stays within.
constexpr char IsolateFirst[] = {'\xe2', '\x81', '\xa8', '\0'};
constexpr char IsolateLast[] = {'\xe2', '\x81', '\xa9', '\0'};

// "a", "a and b", "a, b and c"
std::string enumerated(const std::vector<std::string>& words) {
  std::string text;
  for (std::size_t place = 0; place < words.size(); ++place) {
    if (place > 0) text += place + 1 == words.size() ? " and " : ", ";
    text += words[place];
  }
  return text;
}

// "the disk in bay 2", "the disk from bay 4" of one that was seen there last.
std::string diskIn(const PicturedMember& member) {
  switch (member.sight) {
    case Sight::Seen:
      return fmt::format("the disk in bay {}", member.bay);
    case Sight::Inferred:
      return fmt::format("the disk of bay {} (inferred)", member.bay);
    case Sight::Remembered:
      return fmt::format("the disk last seen in bay {}", member.bay);
    case Sight::Nowhere:
      break;
  }
  return "a disk whose bay is not known";
}

const char* fateOf(MemberState state, bool several) {
  switch (state) {
    case MemberFailed:
      return "failed";
    case MemberNotFound:
      return several ? "were missing" : "was missing";
    case MemberOffline:
      return several ? "were offline" : "was offline";
    case MemberStandby:
      return several ? "were on standby" : "was on standby";
    case MemberUnknown:
    case MemberOnline:
      break;
  }
  return several ? "were in an unknown state" : "was in an unknown state";
}

// The members in the worst state that any of them had; empty when all were well.
std::string causeOf(const Incident& incident) {
  const auto better = [](const PicturedMember& a, const PicturedMember& b) {
    return rankOf(a.state) < rankOf(b.state);
  };
  const auto worst = std::max_element(incident.members.begin(), incident.members.end(), better);
  if (worst == incident.members.end()) return "";
  std::vector<std::string> disks;
  for (const PicturedMember& member : incident.members)
    if (member.state == worst->state) disks.push_back(diskIn(member));
  return enumerated(disks) + " " + fateOf(worst->state, disks.size() > 1);
}

// "was degraded from 00:08.000 to 00:22.000", "has been degraded since 00:08.000"
std::string spanOf(const Incident& incident, const std::string& condition) {
  if (!incident.to) {
    return incident.fromStart
               ? fmt::format("was {} all the time", condition)
               : fmt::format("has been {} since {}", condition, clockText(incident.from));
  }
  std::string text =
      incident.fromStart
          ? fmt::format("was {} from the start until {}", condition, clockText(*incident.to))
          : fmt::format("was {} from {} to {}", condition, clockText(incident.from),
                        clockText(*incident.to));
  if (incident.endedByUnplugging) text += ", when its enclosure was unplugged";
  return text;
}

std::string subjectOf(const Incident& incident) {
  const PicturedVolume& volume = incident.volumes.front();
  return fmt::format("{} ({} in {})", shownName(volume.name), wordFor(volume.level),
                     shownName(incident.enclosure));
}

std::string conditionOf(const Incident& incident) {
  if (incident.worst == VolumeOnline) return "short of a disk";
  return wordsFor(incident.worst) + (incident.severalStates ? " (at worst)" : "");
}

// "Projects (bays 1 and 2)"
std::string volumeWithBays(const PicturedVolume& volume) {
  std::vector<int> bays;
  for (const PicturedMember& member : volume.members)
    if (member.sight != Sight::Nowhere) bays.push_back(member.bay);
  const std::string list = bayList(bays);
  return shownName(volume.name) + (list.empty() ? "" : " (" + list + ")");
}

std::string unpluggedSentence(const Incident& incident) {
  std::string text = fmt::format("{} was unplugged at {}", shownName(incident.enclosure),
                                 clockText(incident.from));
  std::vector<std::string> volumes;
  volumes.reserve(incident.volumes.size());
  for (const PicturedVolume& volume : incident.volumes)
    volumes.push_back(volumeWithBays(volume));
  if (!volumes.empty()) text += ", and with it went " + enumerated(volumes);
  const char* what = volumes.empty() ? "it" : "all of it";
  return text + (incident.to ? fmt::format("; {} was back at {}.", what, clockText(*incident.to))
                             : fmt::format("; not {} has come back.", what));
}

std::string countOf(std::size_t count, const char* one, const char* several) {
  return fmt::format("{} {}", count, count == 1 ? one : several);
}

std::string wellSentence(const Story& story) {
  std::map<std::string, int> volumes;
  std::map<std::uint64_t, int> enclosures;
  for (const Story::Frame& frame : story.frames) {
    for (const auto& picture : frame.enclosures) {
      ++enclosures[picture->uid];
      for (const PicturedVolume& volume : picture->volumes)
        ++volumes[volume.uuid];
    }
  }
  if (enclosures.empty()) return "No enclosure was connected.";
  const std::string where = countOf(enclosures.size(), "enclosure", "enclosures");
  if (volumes.empty()) return "No RAID volume was found in " + where + ".";
  return fmt::format("Nothing went wrong: {} in {}, online whenever connected.",
                     countOf(volumes.size(), "volume", "volumes"), where);
}

}  // namespace

std::string shownName(const std::string& name) {
  const std::string shown =
      clipped(printable(name, Charset::Unicode), LongestName, Charset::Unicode);
  const bool ascii = std::all_of(shown.begin(), shown.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return ascii ? shown : IsolateFirst + shown + IsolateLast;
}

std::string bayList(const std::vector<int>& bays) {
  if (bays.empty()) return "";
  const std::set<int> ordered(bays.begin(), bays.end());
  std::vector<std::string> numbers;
  numbers.reserve(ordered.size());
  for (const int bay : ordered)
    numbers.push_back(std::to_string(bay));
  return (numbers.size() == 1 ? "bay " : "bays ") + enumerated(numbers);
}

std::string sentenceOf(const Incident& incident) {
  switch (incident.kind) {
    case Incident::Kind::Unplugged:
      return unpluggedSentence(incident);
    case Incident::Kind::Gone:
      return subjectOf(incident) + " " + spanOf(incident, "gone") + ".";
    case Incident::Kind::Volume:
      break;
  }
  const std::string cause = causeOf(incident);
  return subjectOf(incident) + " " + spanOf(incident, conditionOf(incident)) +
         (cause.empty() ? "" : ": " + cause) + ".";
}

std::string headlineOf(const Story& story, const std::vector<Incident>& incidents) {
  const Incident* worst = worstOf(incidents);
  return worst == nullptr ? wellSentence(story) : sentenceOf(*worst);
}

std::string outcomeOf(const Story& story) {
  const std::string when = fmt::format("At the end, {}, ", clockText(story.end));
  std::vector<std::string> troubled;
  std::size_t online = 0;
  const Story::Frame* last = story.frames.empty() ? nullptr : &story.frames.back();
  for (const auto& picture : last != nullptr ? last->enclosures : Story::Frame().enclosures) {
    for (const PicturedVolume& volume : picture->volumes) {
      if (volume.state == VolumeOnline) {
        ++online;
      } else {
        troubled.push_back(shownName(volume.name) + " is " + wordsFor(volume.state));
      }
    }
  }
  if (troubled.empty()) {
    return when + (online == 0 ? "no volume is there."
                               : countOf(online, "volume is online.", "volumes are online."));
  }
  if (online > 0) troubled.push_back(countOf(online, "other is online", "others are online"));
  return when + enumerated(troubled) + ".";
}

}  // namespace Program
