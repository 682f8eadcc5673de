#include "tests/support/CapturedOutput.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace TestSupport {

namespace {

int checked(int result) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), "standard output");
  return result;
}

}  // namespace

CapturedOutput::CapturedOutput() : _file(std::tmpfile()), _saved(-1) {
  if (_file == nullptr) throw std::system_error(errno, std::generic_category(), "tmpfile");
  std::fflush(stdout);
  _saved = checked(dup(STDOUT_FILENO));
  checked(dup2(fileno(_file), STDOUT_FILENO));
}

CapturedOutput::~CapturedOutput() {
  end();
  std::fclose(_file);
}

void CapturedOutput::end() {
  if (_saved < 0) return;
  std::fflush(stdout);
  dup2(_saved, STDOUT_FILENO);
  close(_saved);
  _saved = -1;
}

std::string CapturedOutput::text() const {
  std::fflush(stdout);
  std::string text;
  char buffer[4096];
  off_t offset = 0;
  for (;;) {
    const ssize_t got = pread(fileno(_file), buffer, sizeof buffer, offset);
    if (got <= 0) return text;
    text.append(buffer, static_cast<std::size_t>(got));
    offset += got;
  }
}

}  // namespace TestSupport
