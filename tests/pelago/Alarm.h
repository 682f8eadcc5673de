#pragma once

#include <sys/time.h>

#include <csignal>

namespace PelagoTest {

// Calls a handler every millisecond, by SIGALRM: the only way to be sure that a signal comes while
// a clock sleeps.
class Alarm {
 public:
  explicit Alarm(void (*handler)(int)) {
    std::signal(SIGALRM, handler);
    constexpr timeval millisecond{0, 1000};
    const itimerval repeating{millisecond, millisecond};
    ::setitimer(ITIMER_REAL, &repeating, nullptr);
  }
  ~Alarm() {
    const itimerval off{};
    ::setitimer(ITIMER_REAL, &off, nullptr);
    std::signal(SIGALRM, SIG_IGN);  // under valgrind one may still come
  }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;
};

}  // namespace PelagoTest
