#pragma once

#include "platform/pelago/PelagoExport.h"

namespace Pelago {

// Something that happens again and again: timeout() is called every period until stop().
//
// Ownership: its creator's; the framework never deletes a timer. A destroyed timer stops.
// Thread:    the event thread only. timeout() may start, stop or delete any timer, itself included.
// Failure:   start() without an Application is logged and leaves the timer stopped. A timer that
//            outlives the Application is stopped by its end.
//
// The order of the virtual operations is part of the binary interface.
class PELAGO_EXPORT Timer {
 public:
  // A stopped timer.
  Timer() = default;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  virtual ~Timer();

  // Called at each expiry. The base version does nothing.
  virtual void timeout();

  // First expiry `period` milliseconds from now, then every `period` (0 counts as 1). On a running
  // timer: starts anew. Expiries that a late loop missed are not made up for, and do not shift the
  // later ones.
  void start(unsigned period);

  // No further expiries. On a stopped timer: nothing.
  void stop();

  // Whether further expiries are due.
  bool running() const { return _running; }

 private:
  friend class Application;

  bool _running = false;
};

}  // namespace Pelago
