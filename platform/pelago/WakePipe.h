#pragma once

#include <atomic>

#include "platform/pelago/Clock.h"

namespace Pelago {

// A sleep that a signal handler can end.
//
// Ownership: owns the two descriptors of a pipe; programs started by the process do not inherit
//            them.
// Thread:    one thread sleeps; wake() may be called from any thread and from a signal handler.
// Failure:   the constructor throws std::system_error when there is no descriptor left.
class PELAGO_EXPORT WakePipe {
 public:
  // Nobody has called wake() yet.
  WakePipe();
  ~WakePipe();
  WakePipe(const WakePipe&) = delete;
  WakePipe& operator=(const WakePipe&) = delete;

  // Ends the sleep that is going on, or else the next one. Async-signal-safe; keeps errno.
  void wake();

  // Whether wake() was called since the last time that this or sleep() said so.
  bool taken();

  // Sleeps for a span, Clock::Never for as long as it takes. May end early; true when wake() ended
  // it.
  bool sleep(Milliseconds span);

 private:
  void drain();

  int _read = -1;
  int _write = -1;
  std::atomic<bool> _woken{false};
};

}  // namespace Pelago
