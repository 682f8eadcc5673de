#include "application/session/DueClock.h"

#include <algorithm>
#include <utility>

#include "application/progress/Progress.h"

namespace Program {

DueClock::DueClock(Pelago::Clock& clock, Pelago::Milliseconds end, BeforeWait beforeWait)
    : _clock(clock), _end(end), _beforeWait(std::move(beforeWait)) {}

DueClock::~DueClock() = default;

void DueClock::showOn(std::unique_ptr<Progress> progress) { _progress = std::move(progress); }

bool DueClock::waitUntil(Pelago::Milliseconds moment) {
  if (moment > now() && _beforeWait && !_beforeWait()) return false;
  if (_progress != nullptr) _progress->reach(moment);
  if (!_clock.waitUntil(moment)) return false;
  if (moment <= _end) _lastDue = std::max(_lastDue, moment);
  return true;
}

}  // namespace Program
