#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "application/session/Source.h"
#include "platform/pelago/VirtualClock.h"

namespace ProgramTest {

// Virtual time, and a registry that a test changes at given moments.
class StagedSource : public Program::Source {
 public:
  using Change = std::pair<Pelago::Milliseconds, std::function<void()>>;

  explicit StagedSource(std::vector<Change> changes) : _changes(std::move(changes)) {}

  Pelago::Clock& clock() override { return _clock; }
  std::optional<Pelago::Milliseconds> nextLook() const override {
    if (_next == _changes.size()) return std::nullopt;
    return _changes[_next].first;
  }
  void prepareLook() override { _changes[_next++].second(); }
  std::optional<Pelago::Milliseconds> end() const override { return std::nullopt; }
  std::optional<Program::HandleAccounts> accounts() const override { return std::nullopt; }

 private:
  Pelago::VirtualClock _clock;
  std::vector<Change> _changes;
  std::size_t _next = 0;
};

}  // namespace ProgramTest
