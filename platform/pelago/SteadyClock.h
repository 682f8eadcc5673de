#pragma once

#include <chrono>

#include "platform/pelago/Clock.h"
#include "platform/pelago/WakePipe.h"

namespace Pelago {

// Real time, which never goes back; starts at 0 when the clock is made. A wait sleeps: the process
// does not wake before the moment or an interrupt.
//
// Ownership: its maker's; it outlives the Application that runs by it.
// Thread:    as any Clock: interrupt() from any thread and from a signal handler, the rest on the
//            event thread.
// Failure:   making one throws std::system_error when there is no descriptor left.
class PELAGO_EXPORT SteadyClock : public Clock {
 public:
  // Its time is 0 now.
  SteadyClock();
  ~SteadyClock() override;

  Milliseconds now() const override;
  bool waitUntil(Milliseconds moment) override;
  void interrupt() override;

 private:
  std::chrono::steady_clock::time_point _start;
  WakePipe _wake;
};

}  // namespace Pelago
