#include "tests/faults/FailingMemory.h"

#include <cstdlib>
#include <new>

namespace FaultTest {
namespace {

int plenty = 0;
std::uint64_t asked = 0;
std::uint64_t failing = 0;  // the allocation that fails; 0: none
bool hasFailed = false;

bool mustFail() {
  if (plenty > 0) return false;
  ++asked;
  if (failing == 0 || asked != failing) return false;
  hasFailed = true;
  return true;
}

}  // namespace

std::uint64_t FailingMemory::allocations() { return asked; }

void FailingMemory::fail(std::uint64_t n) {
  failing = asked + n;
  hasFailed = false;
}

bool FailingMemory::failNothing() {
  failing = 0;
  return hasFailed;
}

PlentyOfMemory::PlentyOfMemory() { ++plenty; }
PlentyOfMemory::~PlentyOfMemory() { --plenty; }

}  // namespace FaultTest

// Whoever asks for memory that need not be (a sort, say) is never refused: nobody would notice.
void* operator new(std::size_t size, const std::nothrow_t& /*nothrow*/) noexcept {
  return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
  if (FaultTest::mustFail()) throw std::bad_alloc();
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*nothrow*/) noexcept {
  std::free(memory);
}
