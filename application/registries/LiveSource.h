#pragma once

#include <memory>

#include "application/session/Source.h"

namespace Program {

// The registry of the running system: its content is there by itself, its time is real. Nothing
// says when a device comes or goes, so discovery looks every second.
class LiveSource : public Source {
 public:
  static constexpr Pelago::Milliseconds LookPeriod = 1000;

  explicit LiveSource(std::unique_ptr<Pelago::Clock> clock);

  Pelago::Clock& clock() override { return *_clock; }
  std::optional<Pelago::Milliseconds> nextLook() const override { return _nextLook; }
  void prepareLook() override;
  std::optional<Pelago::Milliseconds> end() const override { return std::nullopt; }
  bool isLive() const override { return true; }
  std::optional<HandleAccounts> accounts() const override { return std::nullopt; }

 private:
  std::unique_ptr<Pelago::Clock> _clock;
  Pelago::Milliseconds _nextLook = 0;
};

}  // namespace Program
