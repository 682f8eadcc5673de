#pragma once

#include <functional>
#include <memory>

#include "platform/pelago/Clock.h"

namespace Program {

class Progress;

// Passes on another clock, and remembers the last moment at which something was due: the loop waits
// for nothing else. A wait beyond `end` is the one that finds out that nothing more is due.
class DueClock : public Pelago::Clock {
 public:
  // As good as none: the moment before the one that does not come.
  static constexpr Pelago::Milliseconds NoEnd = Never - 1;

  // Called before every wait for a moment that has not come; false: there is no wait, as if it had
  // been interrupted.
  using BeforeWait = std::function<bool()>;

  DueClock(Pelago::Clock& clock, Pelago::Milliseconds end, BeforeWait beforeWait = {});
  ~DueClock() override;

  Pelago::Milliseconds now() const override { return _clock.now(); }
  bool waitUntil(Pelago::Milliseconds moment) override;
  void interrupt() override { _clock.interrupt(); }

  Pelago::Milliseconds lastDue() const { return _lastDue; }

  // Is told every moment that is waited for; null: nobody is.
  void showOn(std::unique_ptr<Progress> progress);

 private:
  Pelago::Clock& _clock;
  Pelago::Milliseconds _end;
  BeforeWait _beforeWait;
  Pelago::Milliseconds _lastDue = 0;
  std::unique_ptr<Progress> _progress;
};

}  // namespace Program
