#pragma once

#include "platform/pelago/Clock.h"
#include "platform/pelago/WakePipe.h"

namespace Pelago {

// A clock that starts at 0 and jumps: waiting costs nothing. For replays and tests. Only a wait for
// Never really waits.
class PELAGO_EXPORT VirtualClock : public Clock {
 public:
  VirtualClock();
  ~VirtualClock() override;

  Milliseconds now() const override;
  bool waitUntil(Milliseconds moment) override;
  void interrupt() override;

 private:
  Milliseconds _now = 0;
  WakePipe _wake;
};

}  // namespace Pelago
