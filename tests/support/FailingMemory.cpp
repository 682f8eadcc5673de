#include "tests/support/FailingMemory.h"

#include <cstdlib>

namespace {

std::size_t live = 0;
std::uint64_t made = 0;
int plenty = 0;
bool armed = false;
std::uint64_t successesLeft = 0;
std::size_t sizeOfFailure = 0;

// In front of every block: whether it counts is decided when it is asked for.
struct alignas(std::max_align_t) Head {
  bool isCounted;
};

// Fails once, and then lets everything pass.
bool mustFail(std::size_t size) {
  if (plenty > 0) return false;
  ++made;
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
  if (memory == nullptr) return;
  Head* const head = static_cast<Head*>(memory) - 1;
  if (head->isCounted) --live;
  std::free(head);
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  auto* const head = static_cast<Head*>(std::malloc(sizeof(Head) + size));
  if (head == nullptr) return nullptr;
  head->isCounted = plenty == 0;
  if (head->isCounted) ++live;
  return head + 1;
}

void* operator new(std::size_t size) {
  if (mustFail(size)) throw std::bad_alloc();
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete(void* memory, const std::nothrow_t& /*nothrow*/) noexcept { release(memory); }

namespace TestSupport {

std::size_t liveAllocations() { return live; }
std::uint64_t madeAllocations() { return made; }

FailingAllocation::FailingAllocation(std::uint64_t successes) {
  armed = true;
  successesLeft = successes;
  sizeOfFailure = 0;
}

FailingAllocation::~FailingAllocation() { armed = false; }

std::size_t FailingAllocation::failedSize() const { return sizeOfFailure; }

PlentyOfMemory::PlentyOfMemory() { ++plenty; }
PlentyOfMemory::~PlentyOfMemory() { --plenty; }

}  // namespace TestSupport
