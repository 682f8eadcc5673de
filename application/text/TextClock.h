#pragma once

#include <ctime>
#include <functional>
#include <string>
#include <utility>

#include "platform/pelago/Clock.h"

namespace Program {

// How people are told the time: since a recording's start, or by the clock on the wall.
class TextClock {
 public:
  using WallTime = std::function<std::time_t(Pelago::Milliseconds)>;

  // For moments of a clock whose time is real. It is asked anew for each moment, as the clock on
  // the wall may be set meanwhile; it outlives this object.
  static TextClock onTheWall(const Pelago::Clock& clock);

  TextClock() = default;
  explicit TextClock(WallTime wallTime) : _wallTime(std::move(wallTime)) {}

  // "00:06.000", or "2026-11-21 12:03:04" in local time.
  std::string text(Pelago::Milliseconds moment) const;
  // "00:06.000", or "12:03:04".
  std::string timeOfDay(Pelago::Milliseconds moment) const;

 private:
  WallTime _wallTime;
};

}  // namespace Program
