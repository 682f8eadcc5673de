#include "tests/pelago/FailingAllocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int unlimited = -1;
int successesLeft = unlimited;

}  // namespace

void* operator new(std::size_t size) {
  if (successesLeft == 0) throw std::bad_alloc();
  if (successesLeft > 0) --successesLeft;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace PelagoTest {

FailingAllocation::FailingAllocation(int successes) { successesLeft = successes; }

FailingAllocation::~FailingAllocation() { successesLeft = unlimited; }

}  // namespace PelagoTest
