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
  // A walk goes everywhere below or above; any other iterator is one of the rest.
  enum class Kind : std::uint8_t { Free, Entry, RecursiveWalk, OtherIterator, Dead };

  union {
    Entry* entry;
    RegistryIterator* iterator;
    EntryID deadID;
    std::uint32_t nextFree;
  };
  std::uint64_t references;  // held by users
  std::uint32_t number;      // the handle while it is held; else one that belongs to another place
  std::uint8_t generation;
  Kind kind;
  std::uint32_t retirement;  // of a dead name: which one it was, counted over all

  bool isIterator() const { return kind == Kind::RecursiveWalk || kind == Kind::OtherIterator; }
};

// The numbers of entries and iterators: the slot's place in the lower 24 bits, above it the slot's
// generation, which is never 0 and goes up each time the slot is given away. So an entry has one
// number for its whole life, no number is 0, and one that was given back reads as unknown for a
// long time.
//
// There is one table per process. Where its slots are is known without an object, because looking
// one up is most of what the short operations do.
class HandleTable {
 public:
  static constexpr unsigned PlaceBits = 24;
  static std::uint32_t placeOf(Handle handle) { return handle & ((1U << PlaceBits) - 1U); }

  Handle open(Entry& entry);
  Handle open(RegistryIterator& iterator, Slot::Kind kind);

  // The slot while users hold references on the number; else null. An entry that nobody holds has
  // its number already, and yet the number is unknown.
  static Slot* held(Handle handle) {
    Slot& slot = _lookUp.slots[handle & _lookUp.mask];
    return slot.number == handle ? &slot : nullptr;
  }

  // The number's slot while the entry lives, held or not.
  static Slot& at(Handle handle) { return _lookUp.slots[placeOf(handle)]; }
  const std::vector<Slot>& slots() const { return _slots; }

  // One reference more on the number, one less. The last one gone, the number is unknown.
  static Handle hold(Handle handle) {
    Slot& slot = at(handle);
    ++slot.references;
    slot.number = handle;
    return handle;
  }
  static bool drop(Slot& slot, Handle handle) {
    if (--slot.references != 0) return false;
    slot.number = elsewhere(handle);
    return true;
  }

  // The entry is gone: its number becomes a dead name while it is held, else unknown.
  void retire(Handle handle, EntryID id) noexcept;
  // The number becomes unknown.
  void close(Handle handle) noexcept;
  void closeAll() noexcept;

  // The next `count` openings take no memory.
  void reserve(std::size_t count);

 private:
  static constexpr std::uint32_t NoPlace = UINT32_MAX;

  // The slots, of which there are a power of two: a place beyond them is looked for at another
  // place, where the number is not the same. At first there are two that stand for nothing.
  struct LookUp {
    Slot* slots;
    std::uint32_t mask;
  };

  // No number that is looked for where this one is, whatever the count of slots.
  static constexpr Handle elsewhere(Handle handle) noexcept { return ~handle; }
  static constexpr Slot freeSlot(std::uint32_t place) noexcept {
    return {{nullptr}, 0, elsewhere(place), 1, Slot::Kind::Free, 0};
  }

  std::uint32_t take();
  void grow(std::size_t needed);

  inline static Slot _nothing[2] = {freeSlot(0), freeSlot(1)};
  inline static LookUp _lookUp = {_nothing, 1};

  std::vector<Slot> _slots;
  std::size_t _used = 0;  // the places from here on were never taken
  std::uint32_t _firstFree = NoPlace;
  std::size_t _free = 0;
  std::uint32_t _retirements = 0;
};

}  // namespace MemoryRegistry
