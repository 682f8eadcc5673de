#include "application/session/DueClock.h"

#include <algorithm>

#include "application/progress/Progress.h"

namespace Program {

bool DueClock::waitUntil(Pelago::Milliseconds moment) {
  if (moment > now() && _beforeWait && !_beforeWait()) return false;
  if (_progress != nullptr) _progress->reach(moment);
  if (!_clock.waitUntil(moment)) return false;
  if (moment <= _end) _lastDue = std::max(_lastDue, moment);
  return true;
}

}  // namespace Program
