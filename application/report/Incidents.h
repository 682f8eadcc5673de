#pragma once

#include <optional>
#include <string>
#include <vector>

#include "application/report/Story.h"

namespace Program {

// A span of time in which something was not as it should be.
struct Incident {
  enum class Kind {
    Volume,     // it was not online, or without one of its disks
    Gone,       // it was not there, though its enclosure was
    Unplugged,  // its enclosure was not there
  };

  Kind kind = Kind::Volume;
  std::uint64_t device = 0;
  std::string enclosure;  // its name
  Story::Moment from = 0;
  bool fromStart = false;           // it already was so in the first frame
  std::optional<Story::Moment> to;  // none: it still is so at the end
  bool endedByUnplugging = false;

  // The volume; of an unplugged enclosure each that it had then.
  std::vector<PicturedVolume> volumes;  // as they were when it began
  // Of Kind::Volume: the worst that became of it (online: a disk was lacking), and the members that
  // were not online, each with its worst state and the bay as it was then.
  RAIDMonitoring::RAIDVolumeState worst = RAIDMonitoring::VolumeOnline;
  bool severalStates = false;  // it was not in its worst state all along
  std::vector<PicturedMember> members;
};

// Those of a story, in the order of their beginning.
std::vector<Incident> incidentsOf(const Story& story);

// How bad it is.
int rankOf(const Incident& incident);

// The one to tell of first: what is not over before what is, then the worst, then the first. Null
// when there is none.
const Incident* worstOf(const std::vector<Incident>& incidents);

}  // namespace Program
