#include "application/watch/WatchOutput.h"

#include "application/StandardError.h"
#include "application/StandardOutput.h"
#include "platform/pelago/Application.h"

namespace Program {
namespace {

// To the start of the line, and everything from there on is cleared: a terminal that was narrowed
// may have broken the status line in two.
constexpr const char* Clear = "\r\033[J";

}  // namespace

WatchOutput::~WatchOutput() { removeStatus(); }

void WatchOutput::write(const std::string& text) {
  _output.write(text);
  Pelago::Application* application = Pelago::Application::instance();
  if (_output.failed() && application != nullptr) application->quit();
}

void WatchOutput::writeLine(const std::string& line) {
  write((_statusShown ? Clear : "") + line + "\n");
  _statusShown = false;
}

void WatchOutput::complain(const std::string& line) {
  removeStatus();
  printError("raidmonitor: " + line);
}

// The cursor goes back to its start: there it stays when the terminal breaks the line anew, and
// what else is written to the terminal takes the line's place.
void WatchOutput::showStatus(const std::string& text) {
  if (!_output.isTerminal()) return;
  write((_statusShown ? Clear : "") + text + "\r");
  _statusShown = true;
}

void WatchOutput::removeStatus() {
  if (_statusShown) write(Clear);
  _statusShown = false;
}

int WatchOutput::columns() const { return _output.columns(); }

}  // namespace Program
