#include "application/StandardOutput.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "application/StandardError.h"
#include "application/progress/Progress.h"

namespace Program {
namespace {

bool isOpen(int descriptor) { return fcntl(descriptor, F_GETFD) != -1; }

// Otherwise the next file to be opened would be taken for a standard stream.
void fillStandardDescriptors() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (!isOpen(descriptor) && open("/dev/null", O_RDWR) != descriptor) return;
  }
}

}  // namespace

StandardOutput::StandardOutput() {
  if (!isOpen(STDOUT_FILENO)) _error = EBADF;
  fillStandardDescriptors();
  if (_error == 0) {
    _descriptor = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (_descriptor == -1) _error = errno;
  }
  divertStandardOutput();
}

StandardOutput::~StandardOutput() { close(); }

void StandardOutput::write(std::string_view text) {
  Progress::hide();
  passOnPrinted();
  while (_error == 0 && !text.empty()) {
    const ssize_t written = ::write(_descriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      _error = errno;
    }
  }
}

void StandardOutput::close() {
  passOnPrinted();
  if (_descriptor != -1 && ::close(_descriptor) != 0 && errno != EINTR && _error == 0) {
    _error = errno;
  }
  _descriptor = -1;
}

std::string StandardOutput::reason() const { return std::generic_category().message(_error); }

bool StandardOutput::isTerminal() const { return _descriptor != -1 && isatty(_descriptor) == 1; }

int StandardOutput::columns() const {
  winsize size{};
  if (!isTerminal() || ioctl(_descriptor, TIOCGWINSZ, &size) != 0) return 0;
  return size.ws_col;
}

}  // namespace Program
