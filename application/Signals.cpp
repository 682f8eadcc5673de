#include "application/Signals.h"

#include <cerrno>

#include "platform/pelago/Application.h"

namespace Program {
namespace {

void quit(int) {
  const int interrupted = errno;
  Pelago::Application::instance()->quit();
  errno = interrupted;
}

}  // namespace

QuitOnSignals::QuitOnSignals() {
  struct sigaction action = {};
  action.sa_handler = quit;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &_interrupt);
  sigaction(SIGTERM, &action, &_terminate);
}

QuitOnSignals::~QuitOnSignals() {
  sigaction(SIGINT, &_interrupt, nullptr);
  sigaction(SIGTERM, &_terminate, nullptr);
}

}  // namespace Program
