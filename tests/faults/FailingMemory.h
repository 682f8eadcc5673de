#pragma once

#include <cstdint>

namespace FaultTest {

// The program's operator new, which counts and can be made to fail. What the tests themselves ask
// for, inside a PlentyOfMemory, is neither counted nor refused.
class FailingMemory {
 public:
  static std::uint64_t allocations();
  // The n-th allocation from now (1 is the next) throws std::bad_alloc, once.
  static void fail(std::uint64_t n);
  // Ends that, and tells whether it had come to it.
  static bool failNothing();
};

class PlentyOfMemory {
 public:
  PlentyOfMemory();
  ~PlentyOfMemory();
  PlentyOfMemory(const PlentyOfMemory&) = delete;
  PlentyOfMemory& operator=(const PlentyOfMemory&) = delete;
};

}  // namespace FaultTest
