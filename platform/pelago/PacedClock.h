#pragma once

#include "platform/pelago/SteadyClock.h"
#include "platform/pelago/VirtualClock.h"

namespace Pelago {

// Virtual time at the speed of real time: now() is exact, as on a VirtualClock, but every jump
// first waits until as much real time has passed since the clock was made. For a person who watches
// a replay.
//
// Ownership: its maker's; it outlives the Application that runs by it.
// Thread:    as any Clock: interrupt() from any thread and from a signal handler, the rest on the
//            event thread.
// Failure:   making one throws std::system_error when there is no descriptor left.
class PELAGO_EXPORT PacedClock : public VirtualClock {
 public:
  // Both times are 0 now.
  PacedClock();
  ~PacedClock() override;

  bool waitUntil(Milliseconds moment) override;
  void interrupt() override;

 private:
  SteadyClock _real;
};

}  // namespace Pelago
