#pragma once

#include <signal.h>

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
  struct sigaction _interrupt;
  struct sigaction _terminate;
};

}  // namespace Program
