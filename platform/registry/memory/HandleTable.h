#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

struct Entry;
class RegistryIterator;

using Handle = std::uint32_t;

// What a handle stands for. The slot of an entry that has died under its handles stays behind as a
// dead name with its ID, until the last reference is given back.
//
// Of a size that is a power of two, because every operation begins by looking one up.
struct alignas(32) Slot {
  enum class Kind : std::uint8_t { Free, Entry, Iterator, Dead };

  union {
    Entry* entry;
    RegistryIterator* iterator;
    EntryID deadID;
    std::uint32_t nextFree;
  };
  std::uint64_t references;  // held by users
  std::uint8_t generation;
  Kind kind;
  std::uint32_t retirement;  // of a dead name: which one it was, counted over all
};

// The numbers of entries and iterators: the slot's place in the lower 24 bits, above it the slot's
// generation, which is never 0 and goes up each time the slot is given away. So an entry has one
// number for its whole life, no number is 0, and one that was given back reads as unknown for a
// long time.
class HandleTable {
 public:
  static constexpr unsigned PlaceBits = 24;
  static std::uint32_t placeOf(Handle handle) { return handle & ((1U << PlaceBits) - 1U); }

  Handle open(Entry& entry);
  Handle open(RegistryIterator& iterator);

  // The slot while users hold references on the number; else null. An entry that nobody holds has
  // its number already, and yet the number is unknown.
  Slot* held(Handle handle) {
    const std::uint32_t place = placeOf(handle);
    if (place >= _slots.size()) return nullptr;
    Slot& slot = _slots[place];
    return slot.generation == handle >> PlaceBits && slot.references != 0 ? &slot : nullptr;
  }

  // The number's slot while the entry lives, held or not.
  Slot& at(Handle handle) { return _slots[placeOf(handle)]; }
  const std::vector<Slot>& slots() const { return _slots; }

  // The entry is gone: its number becomes a dead name while it is held, else unknown.
  void retire(Handle handle, EntryID id) noexcept;
  // The number becomes unknown.
  void close(Handle handle) noexcept;
  void closeAll() noexcept;

  // The next `count` openings take no memory.
  void reserve(std::size_t count);

 private:
  static constexpr std::uint32_t NoPlace = UINT32_MAX;

  std::uint32_t take();

  std::vector<Slot> _slots;
  std::uint32_t _firstFree = NoPlace;
  std::size_t _free = 0;
  std::uint32_t _retirements = 0;
};

}  // namespace MemoryRegistry
