#include "application/progress/Progress.h"

#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

namespace Program {
namespace {

using namespace std::chrono_literals;

constexpr auto Patience = 1s;
constexpr auto Period = 100ms;
constexpr int Width = 30;
constexpr int DefaultColumns = 80;

bool canDraw() {
  const char* name = std::getenv("TERM");
  const std::string_view terminal = name != nullptr ? name : "";
  return isatty(STDERR_FILENO) == 1 && !terminal.empty() && terminal != "dumb";
}

int columnsOfTerminal() {
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
  return known ? size.ws_col : DefaultColumns;
}

// What can't be written is not missed.
void print(const std::string& text) {
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

std::string barOf(const char* work, std::int64_t done, std::int64_t whole) {
  std::string line = work;
  if (whole <= 0) return line + " ...";
  const double share = std::clamp(static_cast<double>(done) / static_cast<double>(whole), 0.0, 1.0);
  const auto filled = static_cast<std::size_t>(share * Width);
  line += " [" + std::string(filled, '#') + std::string(Width - filled, '.') + "] ";
  return line + std::to_string(static_cast<int>(share * 100)) + "%";
}

// Signals are the business of the thread that works.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &_before);
  }
  ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;

 private:
  sigset_t _before;
};

}  // namespace

class Progress::Bar {
 public:
  Bar(const char* work, std::int64_t whole) : _work(work), _whole(whole) {
    const BlockedSignals blocked;
    _thread = std::thread([this] { run(); });
    current = this;
  }
  ~Bar() {
    current = nullptr;
    {
      const std::lock_guard<std::mutex> lock(_mutex);
      _ended = true;
    }
    _wake.notify_one();
    _thread.join();
    erase();
  }
  Bar(const Bar&) = delete;
  Bar& operator=(const Bar&) = delete;

  void reach(std::int64_t done) noexcept { _done.store(done, std::memory_order_relaxed); }
  void expect(std::int64_t whole) noexcept { _whole.store(whole, std::memory_order_relaxed); }

  void hide() {
    if (!_mayBeShown.load(std::memory_order_relaxed)) return;
    const std::lock_guard<std::mutex> lock(_mutex);
    erase();
  }

  // Touched by the thread that works alone.
  inline static Bar* current = nullptr;

 private:
  void run() {
    std::unique_lock<std::mutex> lock(_mutex);
    _wake.wait_for(lock, Patience, [this] { return _ended; });
    _mayBeShown.store(true, std::memory_order_relaxed);
    while (!_ended) {
      draw();
      _wake.wait_for(lock, Period, [this] { return _ended; });
    }
  }

  // The cursor stays at the start of the line: whatever is printed next begins there.
  void draw() {
    std::string line =
        barOf(_work, _done.load(std::memory_order_relaxed), _whole.load(std::memory_order_relaxed));
    const int columns = columnsOfTerminal() - 1;
    if (columns < static_cast<int>(line.size())) line.resize(static_cast<std::size_t>(columns));
    print("\r" + line + "\x1b[K\r");
    _shown = true;
  }

  void erase() {
    if (_shown) print("\r\x1b[K");
    _shown = false;
  }

  const char* _work;
  std::atomic<std::int64_t> _whole;
  std::atomic<std::int64_t> _done{0};
  std::atomic<bool> _mayBeShown{false};
  std::mutex _mutex;
  std::condition_variable _wake;
  bool _ended = false;
  bool _shown = false;
  std::thread _thread;
};

Progress::Progress(const char* work, std::int64_t whole) {
  if (Bar::current != nullptr || !canDraw()) return;
  try {
    _bar = std::make_unique<Bar>(work, whole);
  } catch (const std::system_error&) {
    // No thread to be had.
  }
}

Progress::~Progress() = default;

void Progress::reach(std::int64_t done) noexcept {
  if (_bar != nullptr) _bar->reach(done);
}

void Progress::reach(std::int64_t done, std::int64_t whole) noexcept {
  if (_bar != nullptr) _bar->expect(whole);
  reach(done);
}

void Progress::hide() noexcept {
  if (Bar::current != nullptr) Bar::current->hide();
}

}  // namespace Program
