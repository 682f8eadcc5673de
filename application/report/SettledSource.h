#pragma once

#include <functional>
#include <utility>

#include "application/session/Source.h"

namespace Program {

// Passes on another source, and calls back whenever everything that was due at a moment has
// happened: just before time moves on.
class SettledSource : public Source {
 public:
  using Callback = std::function<void()>;

  SettledSource(Source& source, Callback settled)
      : _source(source), _clock(source.clock(), std::move(settled)) {}

  Pelago::Clock& clock() override { return _clock; }
  std::optional<Pelago::Milliseconds> nextLook() const override { return _source.nextLook(); }
  void prepareLook() override { _source.prepareLook(); }
  std::optional<Pelago::Milliseconds> end() const override { return _source.end(); }
  std::optional<HandleAccounts> accounts() const override { return _source.accounts(); }

 private:
  class Clock : public Pelago::Clock {
   public:
    Clock(Pelago::Clock& clock, Callback settled) : _clock(clock), _settled(std::move(settled)) {}

    Pelago::Milliseconds now() const override { return _clock.now(); }
    bool waitUntil(Pelago::Milliseconds moment) override;
    void interrupt() override { _clock.interrupt(); }

   private:
    Pelago::Clock& _clock;
    Callback _settled;
  };

  Source& _source;
  Clock _clock;
};

}  // namespace Program
