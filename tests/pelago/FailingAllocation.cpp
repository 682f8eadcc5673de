#include "tests/pelago/FailingAllocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr int unlimited = -1;
int successesLeft = unlimited;

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  if (successesLeft == 0) return nullptr;
  if (successesLeft > 0) --successesLeft;
  return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*nothrow*/) noexcept {
  std::free(memory);
}

namespace PelagoTest {

FailingAllocation::FailingAllocation(int successes) { successesLeft = successes; }

FailingAllocation::~FailingAllocation() { successesLeft = unlimited; }

}  // namespace PelagoTest
