#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "platform/registry/memory/MemoryRegistry.h"

namespace MemoryRegistry {

// Counts the calls of the seam and fails those that are to fail.
class OperationLog {
 public:
  static OperationLog& instance() { return _instance; }

  // Operations that can't fail begin with this, the others with enter(), which tells the failure
  // that the call is to have, if any.
  void count(Operation operation) { ++_calls[static_cast<std::size_t>(operation)]; }
  std::optional<Failure> enter(Operation operation) {
    count(operation);
    if (!_armed) return std::nullopt;
    return judge(operation);
  }

  // For operations that keep their short way short: true when none is to fail, and then count()
  // will do; else the call has to go by way of enter().
  bool isQuiet() const { return !_armed; }

  std::uint64_t calls(Operation operation) const {
    return _calls[static_cast<std::size_t>(operation)];
  }
  std::uint64_t calls() const;

  // No operation: any that can fail.
  void fail(std::optional<Operation> operation, std::uint64_t n, Repeat repeat, Failure failure);
  void failNothing() { _armed = false; }
  void reset();

 private:
  [[gnu::cold]] std::optional<Failure> judge(Operation operation);

  static OperationLog _instance [[gnu::visibility("hidden")]];

  std::array<std::uint64_t, OperationCount> _calls{};
  bool _armed = false;
  std::optional<Operation> _operation;
  std::uint64_t _callsLeft = 0;  // that pass unharmed
  Repeat _repeat = Repeat::Once;
  Failure _failure = Failure::Error;
};

}  // namespace MemoryRegistry
