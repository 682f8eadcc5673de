#include "application/text/TextClock.h"

#include <fmt/format.h>

#include <chrono>

#include "application/text/TextModel.h"

namespace Program {
namespace {

using std::chrono::system_clock;

std::tm localTime(std::time_t moment) {
  std::tm parts{};
  localtime_r(&moment, &parts);
  return parts;
}

std::string timeText(const std::tm& time) {
  return fmt::format("{:02}:{:02}:{:02}", time.tm_hour, time.tm_min, time.tm_sec);
}

}  // namespace

TextClock TextClock::onTheWall(const Pelago::Clock& clock) {
  return TextClock([&clock](Pelago::Milliseconds moment) {
    const std::chrono::milliseconds ago(clock.now() - moment);
    return system_clock::to_time_t(system_clock::now() - ago);
  });
}

std::string TextClock::text(Pelago::Milliseconds moment) const {
  if (!_wallTime) return clockText(moment);
  const std::tm time = localTime(_wallTime(moment));
  return fmt::format("{:04}-{:02}-{:02} {}", time.tm_year + 1900, time.tm_mon + 1, time.tm_mday,
                     timeText(time));
}

std::string TextClock::timeOfDay(Pelago::Milliseconds moment) const {
  return _wallTime ? timeText(localTime(_wallTime(moment))) : clockText(moment);
}

}  // namespace Program
