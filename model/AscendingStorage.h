#pragma once

#include <bitset>
#include <cstddef>
#include <functional>
#include <new>

// Under AddressSanitizer places that are not in use are out of bounds; elsewhere these are nothing.
#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) (static_cast<void>(address))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) (static_cast<void>(address))
#endif

namespace RAIDMonitoring {

// Memory for objects of one class at ascending addresses, in the order of their making. Hosts, and
// the volumes that one search finds, are visited in the order of their addresses; with this that is
// the order in which they came, so that a replay reports the same things in the same order on every
// machine. Nothing depends on it but that order.
//
// Ownership: process-wide; what allocate() returns goes back through release().
// Thread:    the event thread only.
// Failure:   an object that finds no place above the others gets ordinary memory.
template <class T, std::size_t Places>
class AscendingStorage {
 public:
  void* allocate(std::size_t size) {
    if (size > sizeof(Place) || _top == Places) return ::operator new(size);
    ASAN_UNPOISON_MEMORY_REGION(&_places[_top], sizeof(Place));
    _used.set(_top);
    return &_places[_top++];
  }

  void release(void* memory) noexcept {
    if (!isPlace(memory)) return ::operator delete(memory);
    _used.reset(static_cast<std::size_t>(static_cast<Place*>(memory) - _places));
    ASAN_POISON_MEMORY_REGION(memory, sizeof(Place));
    while (_top > 0 && !_used.test(_top - 1))
      --_top;
  }

 private:
  struct Place {
    alignas(T) unsigned char bytes[sizeof(T)];
  };

  bool isPlace(const void* memory) const {
    const std::less<> before;
    return !before(memory, _places) && before(memory, _places + Places);
  }

  Place _places[Places];  // pages that no object has lain in cost nothing
  std::bitset<Places> _used;
  std::size_t _top = 0;  // the place above the highest one in use
};

}  // namespace RAIDMonitoring
