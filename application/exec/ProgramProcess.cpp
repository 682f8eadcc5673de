#include "application/exec/ProgramProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string_view>

namespace Program {
namespace {

using Time = std::chrono::steady_clock;

// Nothing portable tells of a child's end and of a moment at once: so it is asked for, ever less
// often.
constexpr int LongestPause = 20;  // milliseconds

class Descriptor {
 public:
  Descriptor() = default;
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return _descriptor; }
  void take(int descriptor) {
    _descriptor = descriptor;
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
  }
  void close() {
    if (_descriptor != -1) ::close(_descriptor);
    _descriptor = -1;
  }

 private:
  int _descriptor = -1;
};

// What a child is started with.
class SpawnSettings {
 public:
  explicit SpawnSettings(int input) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setpgroup(&attributes, 0);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const std::string& text : texts)
    pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

class RunningProgram {
 public:
  explicit RunningProgram(std::string_view input) : _unwritten(input) {}

  // 0, or an error.
  int start(const std::vector<std::string>& command, const std::vector<std::string>& environment) {
    int ends[2];
    if (pipe(ends) != 0) return errno;
    Descriptor reading;
    reading.take(ends[0]);
    _input.take(ends[1]);
    fcntl(_input.get(), F_SETFL, O_NONBLOCK);
    const SpawnSettings settings(reading.get());
    return posix_spawnp(&_process, command.front().c_str(), &settings.actions, &settings.attributes,
                        pointersTo(command).data(), pointersTo(environment).data());
  }

  // It stays a zombie, so that its group's number is not given to others meanwhile.
  bool hasEnded() const {
    siginfo_t info{};
    const int result =
        waitid(P_PID, static_cast<id_t>(_process), &info, WEXITED | WNOHANG | WNOWAIT);
    return result == 0 ? info.si_pid == _process : errno != EINTR;
  }

  // Sleeps until there is room for more input, or for so many milliseconds.
  void feed(int pause) {
    pollfd room{_input.get(), POLLOUT, 0};
    const bool ready = poll(&room, _input.get() == -1 ? 0 : 1, pause) > 0;
    if (ready) write();
  }

  void signalGroup(int signal) const { kill(-_process, signal); }

  Outcome reap() const {
    int status = 0;
    while (waitpid(_process, &status, 0) == -1 && errno == EINTR) {
    }
    if (WIFSIGNALED(status)) return {Outcome::Kind::Killed, WTERMSIG(status)};
    if (WEXITSTATUS(status) != 0) return {Outcome::Kind::Failed, WEXITSTATUS(status)};
    return {};
  }

 private:
  // A program need not read what it is given.
  void write() {
    const ssize_t written = ::write(_input.get(), _unwritten.data(), _unwritten.size());
    if (written > 0) _unwritten.remove_prefix(static_cast<std::size_t>(written));
    const bool later = written < 0 && (errno == EAGAIN || errno == EINTR);
    if (_unwritten.empty() || (written <= 0 && !later)) _input.close();
  }

  std::string_view _unwritten;
  Descriptor _input;
  pid_t _process = -1;
};

// First asks the program to end, then makes it.
class Ending {
 public:
  explicit Ending(const ProgramLimits& limits)
      : _limits(limits), _next(Time::now() + limits.time) {}

  bool begun() const { return _begun; }
  Outcome reason() const { return _reason; }

  void pursue(const RunningProgram& program, bool givenUp) {
    const bool late = Time::now() >= _next;
    if (!begun() && (late || givenUp)) {
      _begun = true;
      _reason = Outcome{givenUp ? Outcome::Kind::GivenUp : Outcome::Kind::TooSlow, 0};
      _next = Time::now() + _limits.grace;
      program.signalGroup(SIGTERM);
    } else if (begun() && late) {
      program.signalGroup(SIGKILL);
    }
  }

 private:
  const ProgramLimits& _limits;
  Time::time_point _next;
  bool _begun = false;
  Outcome _reason{Outcome::Kind::TooSlow, 0};  // once it has begun
};

}  // namespace

Outcome runProgram(const std::vector<std::string>& command, const ProgramCall& call,
                   const ProgramLimits& limits, const std::function<bool()>& givenUp) {
  RunningProgram program(call.input);
  const int error = program.start(command, call.environment);
  if (error != 0) return {Outcome::Kind::NotStarted, error};
  Ending ending(limits);
  for (int pause = 1; !program.hasEnded(); pause = std::min(pause * 2, LongestPause)) {
    program.feed(pause);
    ending.pursue(program, givenUp());
  }
  // Whatever it has started and not waited for is part of what took too long.
  if (ending.begun()) program.signalGroup(SIGKILL);
  const Outcome outcome = program.reap();
  return ending.begun() ? ending.reason() : outcome;
}

}  // namespace Program
