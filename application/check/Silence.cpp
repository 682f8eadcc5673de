#include "application/check/Silence.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace Program {
namespace {

// What the descriptor was, for restore(); -1 when it stays as it is.
int silence(int descriptor) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere == -1) return -1;
  const int before = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  if (before != -1) dup2(nowhere, descriptor);
  close(nowhere);
  return before;
}

void restore(int descriptor, int before) {
  if (before == -1) return;
  dup2(before, descriptor);
  close(before);
}

}  // namespace

Silence::Silence(Streams streams) : _output(silence(STDOUT_FILENO)) {
  if (streams == Streams::ErrorsToo) _errors = silence(STDERR_FILENO);
}

Silence::~Silence() {
  std::fflush(stdout);
  restore(STDOUT_FILENO, _output);
  restore(STDERR_FILENO, _errors);
}

}  // namespace Program
