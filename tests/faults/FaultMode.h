#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace FaultTest {

// One way in which what happens in a life may fail.
struct FaultMode {
  std::string name;
  std::function<std::uint64_t()> count;       // how often what it fails has happened so far
  std::function<void(std::uint64_t n)> fail;  // lets the n-th from now fail
  std::function<void()> lift;                 // lets nothing fail any more
  std::size_t exceptions = 0;                 // that reach the caller, each time
  // Lies in the middle of the stride, where there is one: of two operations each then fails in one
  // way at least.
  bool isBetween = false;
};

// Each operation that can fail fails once, fails with all that follow, and, where it can, succeeds
// with a null handle.
std::vector<FaultMode> registryFaultModes();

// Each allocation fails once.
FaultMode allocationFailureMode();

}  // namespace FaultTest
