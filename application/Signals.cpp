#include "application/Signals.h"

#include <atomic>
#include <cerrno>

#include "platform/pelago/Application.h"
#include "platform/pelago/Clock.h"

namespace Program {
namespace {

void quit(int) {
  const int interrupted = errno;
  Pelago::Application::instance()->quit();
  errno = interrupted;
}

std::atomic<Pelago::Clock*> clockToWake{nullptr};
static_assert(std::atomic<Pelago::Clock*>::is_always_lock_free,
              "a signal handler may not wait for a lock");

void wake(int) {
  const int interrupted = errno;
  if (Pelago::Clock* clock = clockToWake) clock->interrupt();
  errno = interrupted;
}

void handle(int signal, void (*handler)(int), struct sigaction& before) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, &before);
}

}  // namespace

QuitOnSignals::QuitOnSignals() {
  handle(SIGINT, quit, _interrupt);
  handle(SIGTERM, quit, _terminate);
}

QuitOnSignals::~QuitOnSignals() {
  sigaction(SIGINT, &_interrupt, nullptr);
  sigaction(SIGTERM, &_terminate, nullptr);
}

BrokenPipesReported::BrokenPipesReported() { handle(SIGPIPE, SIG_IGN, _before); }

BrokenPipesReported::~BrokenPipesReported() { sigaction(SIGPIPE, &_before, nullptr); }

WakeOnResize::WakeOnResize(Pelago::Clock& clock) {
  clockToWake = &clock;
  handle(SIGWINCH, wake, _before);
}

WakeOnResize::~WakeOnResize() {
  sigaction(SIGWINCH, &_before, nullptr);
  clockToWake = nullptr;
}

}  // namespace Program
