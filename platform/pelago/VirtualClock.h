#pragma once

#include "platform/pelago/Clock.h"
#include "platform/pelago/WakePipe.h"

namespace Pelago {

// A clock that starts at 0 and jumps: a wait sets it to the moment waited for and returns at once,
// so that a day of refreshes takes no longer than their work. For replays and tests. The one wait
// that is a real one is that for Clock::Never, the moment that does not come: it sleeps until
// interrupt(), as on any clock.
//
// Ownership: its maker's; it outlives the Application that runs by it.
// Thread:    as any Clock: interrupt() from any thread and from a signal handler, the rest on the
//            event thread.
// Failure:   making one throws std::system_error when there is no descriptor left.
//
// \code
// #include "platform/pelago/Application.h"
// #include "platform/pelago/Timer.h"
//
// class Counter : public Pelago::Timer {
//  public:
//   void timeout() override { ++expiries; }
//   int expiries = 0;
// };
//
// int main() {
//   Pelago::VirtualClock clock;
//   Pelago::Application application(clock);
//   Counter counter;
//   counter.start(2000);
//   application.runThrough(24 * 60 * 60 * 1000);  // a day, in no time
//   return counter.expiries == 43200 ? 0 : 1;
// }
// \endcode
class PELAGO_EXPORT VirtualClock : public Clock {
 public:
  // Its time is 0.
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
