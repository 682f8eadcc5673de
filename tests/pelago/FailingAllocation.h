#pragma once

namespace PelagoTest {

// While it lives, the allocation after `successes` others, and every later one, throws
// std::bad_alloc.
class FailingAllocation {
 public:
  explicit FailingAllocation(int successes);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
};

}  // namespace PelagoTest
