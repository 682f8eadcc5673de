#include "application/session/DueClock.h"

#include <algorithm>

namespace Program {

bool DueClock::waitUntil(Pelago::Milliseconds moment) {
  if (!_clock.waitUntil(moment)) return false;
  if (moment <= _end) _lastDue = std::max(_lastDue, moment);
  return true;
}

}  // namespace Program
