#pragma once

#include <cstddef>
#include <new>

namespace ModelTest {

// Counts the allocations of a program that links Allocations.cpp, and makes them fail. The
// program's operator new is replaced by it.

// How many are alive.
std::size_t liveAllocations();
// How many were made since the program began, failed ones included.
std::size_t madeAllocations();

// While it lives, the allocation after `successes` others throws std::bad_alloc; those behind it
// succeed again.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t successes);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // Whether it has come to that, and how much was asked for.
  bool failed() const { return failedSize() != 0; }
  std::size_t failedSize() const;
};

// Lets the action fail at its first allocation, its second and so on, until it no longer fails.
// After each failure `check` is called; returns how often that was.
template <class Action, class Check>
std::size_t failEachAllocation(const Action& action, const Check& check) {
  for (std::size_t successes = 0;; ++successes) {
    bool threw = false;
    bool failed = false;
    {
      const FailingAllocation failing(successes);
      try {
        action();
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      failed = failing.failed();
    }
    if (!failed) return successes;
    check(threw);
  }
}

}  // namespace ModelTest
