#include "tests/application/support/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace ProgramTest {
namespace {

int checked(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
  return result;
}

struct Pipe {
  int read = -1;
  int write = -1;
};

Pipe makePipe() {
  int ends[2];
  checked(pipe2(ends, O_CLOEXEC), "pipe");
  return {ends[0], ends[1]};
}

Pipe makeTerminal(int columns) {
  const int master = checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt");
  checked(grantpt(master), "grantpt");
  checked(unlockpt(master), "unlockpt");
  char name[128];
  checked(-ptsname_r(master, name, sizeof name), "ptsname_r");
  const int slave = checked(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC), name);
  winsize size{};
  size.ws_col = static_cast<unsigned short>(columns);
  size.ws_row = 24;
  checked(ioctl(slave, TIOCSWINSZ, &size), "TIOCSWINSZ");
  return {master, slave};
}

Pipe outputFor(const Launch& launch) {
  switch (launch.output) {
    case Launch::Output::Pipe:
      return makePipe();
    case Launch::Output::Terminal:
      return makeTerminal(launch.columns);
    case Launch::Output::File:
      return {-1, checked(open(launch.file.c_str(), O_WRONLY | O_CLOEXEC), launch.file.c_str())};
    case Launch::Output::Closed:
      break;
  }
  return {};
}

void applyEnvironment(const Launch& launch) {
  for (const char* name : {"NO_COLOR", "LC_CTYPE", "LANG"})
    unsetenv(name);
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("TERM", "xterm", 1);
  for (const auto& [name, value] : launch.environment) {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }
}

// In the child.
[[noreturn]] void become(const Arguments& arguments, const Launch& launch, int out, int err) {
  std::vector<char*> argv = {const_cast<char*>(RAIDMONITOR_PROGRAM)};
  for (const std::string& argument : arguments)
    argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  applyEnvironment(launch);
  dup2(err, STDERR_FILENO);
  if (out == -1) {
    close(STDOUT_FILENO);
  } else {
    dup2(out, STDOUT_FILENO);
  }
  execv(argv[0], argv.data());
  _exit(127);
}

void closeDescriptor(int& descriptor) {
  if (descriptor != -1) close(descriptor);
  descriptor = -1;
}

// False at the end, which a terminal reports as an error.
bool readInto(int descriptor, std::string& text) {
  char buffer[65536];
  const ssize_t count = read(descriptor, buffer, sizeof buffer);
  if (count <= 0) return count < 0 && errno == EINTR;
  text.append(buffer, static_cast<std::size_t>(count));
  return true;
}

}  // namespace

RunningProgram::RunningProgram(const Arguments& arguments, const Launch& launch) {
  Pipe out = outputFor(launch);
  Pipe err = launch.errorsOnTerminal ? makeTerminal(launch.columns) : makePipe();
  _process = checked(fork(), "fork");
  if (_process == 0) become(arguments, launch, out.write, err.write);
  closeDescriptor(out.write);
  closeDescriptor(err.write);
  _out = out.read;
  _err = err.read;
}

RunningProgram::~RunningProgram() {
  closeOutput();
  closeDescriptor(_err);
  if (_process == -1) return;
  kill(_process, SIGKILL);
  waitpid(_process, nullptr, 0);
}

void RunningProgram::closeOutput() { closeDescriptor(_out); }

bool RunningProgram::readSome() {
  pollfd ready[] = {{_out, POLLIN, 0}, {_err, POLLIN, 0}};
  if (_out == -1 && _err == -1) return false;
  if (poll(ready, 2, -1) < 0) return errno == EINTR;
  if (ready[0].revents != 0 && !readInto(_out, _result.out)) closeDescriptor(_out);
  if (ready[1].revents != 0 && !readInto(_err, _result.err)) closeDescriptor(_err);
  return true;
}

void RunningProgram::waitForLines(std::size_t count) {
  const auto lines = [this] {
    return static_cast<std::size_t>(std::count(_result.out.begin(), _result.out.end(), '\n'));
  };
  while (lines() < count) {
    if (!readSome()) throw std::runtime_error("the program ended early: " + _result.err);
  }
}

void RunningProgram::waitForError(const std::string& text) {
  if (!printsError(text)) throw std::runtime_error("the program ended early: " + _result.err);
}

bool RunningProgram::printsError(const std::string& text) {
  while (_result.err.find(text) == std::string::npos) {
    if (!readSome()) return false;
  }
  return true;
}

// Its end closes standard error, and nothing else does.
bool RunningProgram::waitForExit(int milliseconds) {
  pollfd ready{_err, POLLIN, 0};
  while (_err != -1 && poll(&ready, 1, milliseconds) > 0) {
    if (!readInto(_err, _result.err)) closeDescriptor(_err);
    ready.fd = _err;
  }
  return _err == -1;
}

void RunningProgram::send(int signal) const { checked(kill(_process, signal), "kill"); }

Result RunningProgram::finish() {
  while (readSome()) {
  }
  int status = 0;
  checked(waitpid(_process, &status, 0), "waitpid");
  _process = -1;
  _result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return _result;
}

Result run(const Arguments& arguments, const Launch& launch) {
  return RunningProgram(arguments, launch).finish();
}

std::string recording(const std::string& name) {
  return std::string(RAIDMONITOR_SOURCES) + "/tests/recordings/data/" + name;
}

std::string contentOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

void expectGolden(const std::string& name, const std::string& text) {
  const std::string file = std::string(RAIDMONITOR_SOURCES) + "/tests/application/golden/" + name;
  if (getenv("RAIDMONITOR_WRITE_GOLDEN") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
  }
  EXPECT_EQ(contentOf(file), text) << "set RAIDMONITOR_WRITE_GOLDEN to write " << file << " anew";
}

}  // namespace ProgramTest
