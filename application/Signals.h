#pragma once

#include <csignal>

namespace Pelago {
class Clock;
}

namespace Program {

// As long as it lives, SIGINT and SIGTERM end the event loop instead of the process. There is one
// at a time; the Pelago::Application exists before it and ends after it.
class QuitOnSignals {
 public:
  QuitOnSignals();
  ~QuitOnSignals();
  QuitOnSignals(const QuitOnSignals&) = delete;
  QuitOnSignals& operator=(const QuitOnSignals&) = delete;

 private:
  struct sigaction _interrupt {};
  struct sigaction _terminate {};
};

// As long as it lives, a write to a pipe that nobody reads is an error of that write, and not the
// end of the process.
class BrokenPipesReported {
 public:
  BrokenPipesReported();
  ~BrokenPipesReported();
  BrokenPipesReported(const BrokenPipesReported&) = delete;
  BrokenPipesReported& operator=(const BrokenPipesReported&) = delete;

 private:
  struct sigaction _before;
};

// As long as it lives, a terminal that changes its size ends the clock's wait: the event loop then
// waits again, and whoever draws before a wait draws anew. There is one at a time; the clock
// outlives it.
class WakeOnResize {
 public:
  explicit WakeOnResize(Pelago::Clock& clock);
  ~WakeOnResize();
  WakeOnResize(const WakeOnResize&) = delete;
  WakeOnResize& operator=(const WakeOnResize&) = delete;

 private:
  struct sigaction _before;
};

}  // namespace Program
