#include "tests/model/Allocations.h"

#include <cstdlib>

namespace {

std::size_t live = 0;
std::size_t made = 0;
bool armed = false;
std::size_t successesLeft = 0;
std::size_t sizeOfFailure = 0;

// Fails once, and then lets everything pass.
bool mustFail(std::size_t size) {
  if (!armed) return false;
  if (successesLeft > 0) {
    --successesLeft;
    return false;
  }
  armed = false;
  sizeOfFailure = size;
  return true;
}

void release(void* memory) noexcept {
  if (memory != nullptr) --live;
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  ++made;
  if (mustFail(size)) return nullptr;
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory != nullptr) ++live;
  return memory;
}

void* operator new(std::size_t size) {
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete(void* memory, const std::nothrow_t& /*nothrow*/) noexcept { release(memory); }

namespace ModelTest {

std::size_t liveAllocations() { return live; }
std::size_t madeAllocations() { return made; }

FailingAllocation::FailingAllocation(std::size_t successes) {
  armed = true;
  successesLeft = successes;
  sizeOfFailure = 0;
}

FailingAllocation::~FailingAllocation() { armed = false; }

std::size_t FailingAllocation::failedSize() const { return sizeOfFailure; }

}  // namespace ModelTest
