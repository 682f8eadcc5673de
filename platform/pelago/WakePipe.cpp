#include "platform/pelago/WakePipe.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>

namespace Pelago {

namespace {

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait for a lock");

// Neither end blocks: a signal handler must not wait for room, and draining ends at the first miss.
void setUp(int descriptor) {
  ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

int pollTimeout(Milliseconds span) {
  constexpr Milliseconds longest = std::numeric_limits<int>::max();
  return span == Clock::Never ? -1 : static_cast<int>(std::clamp<Milliseconds>(span, 0, longest));
}

}  // namespace

WakePipe::WakePipe() {
  int ends[2];
  if (::pipe(ends) != 0)
    throw std::system_error(errno, std::generic_category(), "WakePipe - No pipe");
  _read = ends[0];
  _write = ends[1];
  setUp(_read);
  setUp(_write);
}

WakePipe::~WakePipe() {
  ::close(_read);
  ::close(_write);
}

void WakePipe::wake() {
  const int keptErrno = errno;
  _woken.store(true);
  // A full pipe refuses the byte, and is readable all the same.
  [[maybe_unused]] const auto written = ::write(_write, "", 1);
  errno = keptErrno;
}

bool WakePipe::taken() {
  if (!_woken.exchange(false)) return false;
  drain();
  return true;
}

bool WakePipe::sleep(Milliseconds span) {
  if (taken()) return true;
  pollfd end{_read, POLLIN, 0};
  // Interrupted by a signal, the poll is just an early end of the sleep.
  if (::poll(&end, 1, pollTimeout(span)) <= 0) return taken();
  // The flag alone tells whether somebody woke us. The byte may be that of a wake() whose flag was
  // taken before it came to writing.
  drain();
  return _woken.exchange(false);
}

void WakePipe::drain() {
  char bytes[64];
  while (::read(_read, bytes, sizeof bytes) > 0) {
  }
}

}  // namespace Pelago
