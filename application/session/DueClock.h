#pragma once

#include "platform/pelago/Clock.h"

namespace Program {

class Progress;

// Passes on another clock, and remembers the last moment at which something was due: the loop waits
// for nothing else. A wait beyond `end` is the one that finds out that nothing more is due.
class DueClock : public Pelago::Clock {
 public:
  // As good as none: the moment before the one that does not come.
  static constexpr Pelago::Milliseconds NoEnd = Never - 1;

  DueClock(Pelago::Clock& clock, Pelago::Milliseconds end) : _clock(clock), _end(end) {}

  Pelago::Milliseconds now() const override { return _clock.now(); }
  bool waitUntil(Pelago::Milliseconds moment) override;
  void interrupt() override { _clock.interrupt(); }

  Pelago::Milliseconds lastDue() const { return _lastDue; }

  // Is told every moment that is waited for; null: nobody is.
  void showOn(Progress* progress) { _progress = progress; }

 private:
  Pelago::Clock& _clock;
  Pelago::Milliseconds _end;
  Pelago::Milliseconds _lastDue = 0;
  Progress* _progress = nullptr;
};

}  // namespace Program
