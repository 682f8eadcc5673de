#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

// A program that links failing_memory has this operator new in place of its own: it counts, and can
// be made to fail. Whoever asks for memory that need not be (a sort, say) is never refused: nobody
// would notice.
namespace TestSupport {

// How many allocations are alive, and how many were made since the program began, failed ones
// included. Without those within a PlentyOfMemory.
std::size_t liveAllocations();
std::uint64_t madeAllocations();

// While it lives, the allocation after `successes` others throws std::bad_alloc; those behind it
// succeed again.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::uint64_t successes);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // Whether it has come to that, and how much was asked for.
  bool failed() const { return failedSize() != 0; }
  std::size_t failedSize() const;
};

// What is asked for while one of these lives, by the tests themselves, is neither counted nor
// refused.
class PlentyOfMemory {
 public:
  PlentyOfMemory();
  ~PlentyOfMemory();
  PlentyOfMemory(const PlentyOfMemory&) = delete;
  PlentyOfMemory& operator=(const PlentyOfMemory&) = delete;
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

}  // namespace TestSupport
