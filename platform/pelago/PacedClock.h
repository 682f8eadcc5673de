#pragma once

#include "platform/pelago/SteadyClock.h"
#include "platform/pelago/VirtualClock.h"

namespace Pelago {

// Virtual time at the speed of real time: now() is exact, as on a VirtualClock, but every jump
// first waits until as much real time has passed since the clock was made. For a person who watches
// a replay.
class PELAGO_EXPORT PacedClock : public VirtualClock {
 public:
  PacedClock();
  ~PacedClock() override;

  bool waitUntil(Milliseconds moment) override;
  void interrupt() override;

 private:
  SteadyClock _real;
};

}  // namespace Pelago
