#include "platform/pelago/PacedClock.h"

namespace Pelago {

PacedClock::PacedClock() = default;

PacedClock::~PacedClock() = default;

// Both clocks started at 0 together, so a moment is the same on both, and a replay that fell behind
// catches up instead of falling behind for good.
bool PacedClock::waitUntil(Milliseconds moment) {
  return _real.waitUntil(moment) && VirtualClock::waitUntil(moment);
}

void PacedClock::interrupt() { _real.interrupt(); }

}  // namespace Pelago
