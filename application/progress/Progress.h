#pragma once

#include <cstdint>
#include <memory>

namespace Program {

// How far a long piece of work has come, as a bar on the terminal that standard error is: drawn
// when the work has lasted a second, gone when it is done. Without a terminal there (or with one
// that can't erase a line) nothing is drawn at all.
//
// It is drawn by a thread of its own: the work does no more than store a number, and one long step
// of it shows, too. Whoever prints to the terminal meanwhile calls hide() before.
//
// Thread:  one at a time, made, told and ended on one thread. One made within the life of another
//          draws nothing.
// Failure: none: without a thread, or when the terminal is gone, there is no bar.
class Progress {
 public:
  static constexpr std::int64_t Unknown = -1;

  // `work` is what is done ("Reading"), `whole` the number that will be reached at its end.
  explicit Progress(const char* work, std::int64_t whole = Unknown);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void reach(std::int64_t done) noexcept;
  // The same, for work whose end becomes known on the way.
  void reach(std::int64_t done, std::int64_t whole) noexcept;

  // Takes the bar off the terminal, for the time being.
  static void hide() noexcept;

 private:
  class Bar;

  std::unique_ptr<Bar> _bar;  // null when nothing is drawn
};

}  // namespace Program
