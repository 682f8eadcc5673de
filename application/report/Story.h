#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "application/report/Picture.h"
#include "platform/pelago/Clock.h"
#include "platform/pelago/Logger.h"

namespace Program {

class Source;

// Everything that a report tells of a run.
struct Story {
  using Moment = Pelago::Milliseconds;

  // From this moment until the next frame's: what was so when everything that was due had happened.
  // An enclosure that has not changed shares its picture with the frame before.
  struct Frame {
    Moment time = 0;
    std::vector<std::shared_ptr<const Picture>> enclosures;  // ascending by UID
  };

  enum class Happening {
    DeviceAppeared,
    DeviceDisappeared,
    VolumeAppeared,
    VolumeUpdated,
    VolumeDisappeared
  };

  // What `watch` prints a line for.
  struct Event {
    Moment time = 0;
    Happening what = Happening::DeviceAppeared;
    std::uint64_t device = 0;
    VolumeSnapshot volume;  // of an event that is about one
  };

  struct LogLine {
    Moment time = 0;
    Pelago::Logger::Level level = Pelago::Logger::Level::Debug;
    std::string category;
    std::string text;
  };

  std::vector<Frame> frames;  // each differs from the one before; the first may be empty
  std::vector<Event> events;
  std::vector<LogLine> log;  // the lines that `watch --log` shows
  Moment end = 0;            // of the last thing that was due

  // The frame that is in force at a moment; none before the first.
  const Frame* frameAt(Moment moment) const;
};

// Runs a session on the source until `end`, or until SIGINT or SIGTERM.
Story storyOf(Source& source, std::optional<Pelago::Milliseconds> end);

}  // namespace Program
