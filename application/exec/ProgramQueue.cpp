#include "application/exec/ProgramQueue.h"

#include <chrono>
#include <csignal>
#include <utility>

namespace Program {
namespace {

// A thread inherits its maker's: signals are the event thread's business, and a program that does
// not read its input is no reason to end.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &_before);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t _before;
};

constexpr std::chrono::milliseconds AskPeriod{50};

}  // namespace

ProgramQueue::ProgramQueue(std::vector<std::string> command, const ProgramLimits& limits,
                           Finished finished)
    : _command(std::move(command)), _limits(limits), _finished(std::move(finished)) {
  // Whoever started this process may have had it ignored: then nobody could wait for a child.
  signal(SIGCHLD, SIG_DFL);
  const SignalsBlocked blocked;
  _thread = std::thread([this] { work(); });
}

ProgramQueue::~ProgramQueue() {
  giveUp();
  _thread.join();
}

std::size_t ProgramQueue::waiting() const {
  const std::lock_guard<std::mutex> lock(_mutex);
  return _calls.size();
}

std::size_t ProgramQueue::room() const {
  const std::size_t taken = waiting();
  return taken < _limits.queue ? _limits.queue - taken : 0;
}

void ProgramQueue::add(ProgramCall call) {
  {
    const std::lock_guard<std::mutex> lock(_mutex);
    _calls.push_back(std::move(call));
  }
  _changed.notify_all();
}

bool ProgramQueue::drain(const std::function<bool()>& givenUp) {
  std::unique_lock<std::mutex> lock(_mutex);
  const auto idle = [this] { return _calls.empty() && !_running; };
  while (!_changed.wait_for(lock, AskPeriod, idle)) {
    if (!givenUp()) continue;
    _givenUp = true;
    _changed.notify_all();
    _changed.wait(lock, [this] { return !_running; });
    return false;
  }
  return true;
}

void ProgramQueue::giveUp() {
  {
    const std::lock_guard<std::mutex> lock(_mutex);
    _givenUp = true;
  }
  _changed.notify_all();
}

bool ProgramQueue::isGivenUp() const {
  const std::lock_guard<std::mutex> lock(_mutex);
  return _givenUp;
}

void ProgramQueue::work() {
  std::unique_lock<std::mutex> lock(_mutex);
  while (true) {
    _changed.wait(lock, [this] { return _givenUp || !_calls.empty(); });
    if (_givenUp) return;
    const ProgramCall call = std::move(_calls.front());
    _calls.pop_front();
    _running = true;
    lock.unlock();
    _finished(call, runProgram(_command, call, _limits, [this] { return isGivenUp(); }));
    lock.lock();
    _running = false;
    _changed.notify_all();
  }
}

}  // namespace Program
