#pragma once

#include <sys/time.h>

#include <csignal>

namespace PelagoTest {

// Calls a handler every millisecond, by SIGALRM: the only way to be sure that a signal comes while
// a clock sleeps.
class Alarm {
 public:
  explicit Alarm(void (*handler)(int)) : _before(std::signal(SIGALRM, handler)) {
    constexpr timeval millisecond{0, 1000};
    const itimerval repeating{millisecond, millisecond};
    ::setitimer(ITIMER_REAL, &repeating, nullptr);
  }
  ~Alarm() {
    const itimerval off{};
    ::setitimer(ITIMER_REAL, &off, nullptr);
    std::signal(SIGALRM, _before);
  }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

 private:
  void (*_before)(int);
};

}  // namespace PelagoTest
