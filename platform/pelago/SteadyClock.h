#pragma once

#include <chrono>

#include "platform/pelago/Clock.h"
#include "platform/pelago/WakePipe.h"

namespace Pelago {

// Real time, which never goes back; starts at 0 when the clock is made. A wait sleeps: the process
// does not wake before the moment or an interrupt.
class PELAGO_EXPORT SteadyClock : public Clock {
 public:
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
