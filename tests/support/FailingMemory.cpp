#include "tests/support/FailingMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

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

// What is in front of a block, which has to be aligned itself: at its end is the head.
std::size_t roomInFront(std::size_t alignment) { return std::max(alignment, sizeof(Head)); }

void* take(std::size_t size, std::size_t alignment) noexcept {
  const std::size_t front = roomInFront(alignment);
  const std::size_t whole = (front + size + alignment - 1) / alignment * alignment;
  auto* const block = static_cast<unsigned char*>(std::aligned_alloc(alignment, whole));
  if (block == nullptr) return nullptr;
  auto* const memory = block + front;
  (new (memory - sizeof(Head)) Head)->isCounted = plenty == 0;
  if (plenty == 0) ++live;
  return memory;
}

void* takeOrThrow(std::size_t size, std::size_t alignment) {
  if (mustFail(size)) throw std::bad_alloc();
  if (void* memory = take(size, alignment)) return memory;
  throw std::bad_alloc();
}

void release(void* memory, std::size_t alignment) noexcept {
  if (memory == nullptr) return;
  if ((static_cast<Head*>(memory) - 1)->isCounted) --live;
  std::free(static_cast<unsigned char*>(memory) - roomInFront(alignment));
}

constexpr std::size_t Ordinary = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  return take(size, Ordinary);
}
void* operator new(std::size_t size) { return takeOrThrow(size, Ordinary); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return takeOrThrow(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* memory) noexcept { release(memory, Ordinary); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory, Ordinary); }
void operator delete(void* memory, const std::nothrow_t& /*nothrow*/) noexcept {
  release(memory, Ordinary);
}
void operator delete(void* memory, std::align_val_t alignment) noexcept {
  release(memory, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t alignment) noexcept {
  release(memory, static_cast<std::size_t>(alignment));
}

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
