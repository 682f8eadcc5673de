#include "tests/faults/Branch.h"

#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace FaultTest {
namespace {

constexpr char LastLine[] = "that was all";

// In a branch.
int toParent = -1;
itimerval longestSilence{};

[[noreturn]] void fail(const char* what) {
  throw std::runtime_error(what + (": " + std::string(std::strerror(errno))));
}

void beBranch(int output, std::chrono::milliseconds silence) {
  toParent = output;
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  longestSilence.it_value.tv_sec = silence.count() / 1000;
  longestSilence.it_value.tv_usec = silence.count() % 1000 * 1000;
  setitimer(ITIMER_REAL, &longestSilence, nullptr);
}

std::string readAll(int input) {
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t count = read(input, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(buffer, static_cast<std::size_t>(count));
  }
}

int statusOf(pid_t branch) {
  int status = 0;
  while (waitpid(branch, &status, 0) < 0) {
    if (errno != EINTR) fail("waitpid");
  }
  return status;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

std::string endingOf(int status) {
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) return "did not end in time";
  if (WIFSIGNALED(status)) {
    return "was ended by signal " + std::to_string(WTERMSIG(status)) + ", " +
           strsignal(WTERMSIG(status));
  }
  if (WEXITSTATUS(status) != 0) return "ended with status " + std::to_string(WEXITSTATUS(status));
  return "ended in the middle";
}

BranchReport reportOf(pid_t branch, int input) {
  BranchReport report;
  report.lines = linesOf(readAll(input));
  const int status = statusOf(branch);
  const bool isWhole = !report.lines.empty() && report.lines.back() == LastLine;
  if (isWhole) report.lines.pop_back();
  if (!isWhole || status != 0) report.failure = endingOf(status);
  return report;
}

}  // namespace

std::optional<BranchReport> branchOff(std::chrono::milliseconds silence) {
  int ends[2];
  if (pipe(ends) != 0) fail("pipe");
  const pid_t branch = fork();
  if (branch < 0) fail("fork");
  if (branch == 0) {
    close(ends[0]);
    beBranch(ends[1], silence);
    return std::nullopt;
  }
  close(ends[1]);
  BranchReport report = reportOf(branch, ends[0]);
  close(ends[0]);
  return report;
}

void tell(std::string line) {
  std::replace(line.begin(), line.end(), '\n', ' ');
  line += '\n';
  for (std::size_t start = 0; start < line.size();) {
    const ssize_t count = write(toParent, line.data() + start, line.size() - start);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) _exit(1);
    start += static_cast<std::size_t>(count);
  }
  setitimer(ITIMER_REAL, &longestSilence, nullptr);
}

void endBranch() {
  tell(LastLine);
  _exit(0);
}

}  // namespace FaultTest
