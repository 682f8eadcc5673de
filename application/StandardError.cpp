#include "application/StandardError.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "application/progress/Progress.h"
#include "application/text/TextCharacters.h"
#include "application/text/TextScreen.h"

namespace Program {
namespace {

// Standard output's file, without a name, while standard error is a terminal; else none.
std::FILE* printed = nullptr;

bool isTerminal() { return isatty(STDERR_FILENO) == 1; }

// A pipe does not care what its reader's terminal can show.
Charset charset() { return isTerminal() ? charsetOfLocale() : Charset::Unicode; }

// Takes what is in the file out of it.
std::string takePrinted() {
  std::fflush(stdout);
  std::string text;
  char block[4096];
  const int file = fileno(printed);
  for (;;) {
    const ssize_t count = pread(file, block, sizeof block, static_cast<off_t>(text.size()));
    if (count <= 0) break;
    text.append(block, static_cast<std::size_t>(count));
  }
  if (ftruncate(file, 0) == 0) lseek(file, 0, SEEK_SET);
  return text;
}

void writeLine(std::string_view line) {
  Progress::hide();
  // In one call, so that lines of different processes do not mix.
  std::fputs((printable(line, charset()) + "\n").c_str(), stderr);
}

void divertToFile() {
  printed = std::tmpfile();
  const int file = printed != nullptr ? fileno(printed) : open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(file, STDOUT_FILENO);
  if (printed == nullptr)
    writeLine("raidmonitor: no temporary file: what the library prints is left out");
}

}  // namespace

void printError(std::string_view line) {
  passOnPrinted();
  writeLine(line);
}

void divertStandardOutput() {
  if (isTerminal()) {
    divertToFile();
  } else {
    dup2(STDERR_FILENO, STDOUT_FILENO);
  }
  // A file or pipe would be written in blocks, and the order among the lines lost.
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
}

void passOnPrinted() {
  if (printed == nullptr) return;
  const std::string text = takePrinted();
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    // Marked, because a name with a line feed would else begin a line that looks like one of the
    // log.
    if (!line.empty()) writeLine("library: " + std::string(line));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
  }
}

}  // namespace Program
