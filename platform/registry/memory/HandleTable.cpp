#include "platform/registry/memory/HandleTable.h"

#include <algorithm>
#include <new>

namespace MemoryRegistry {

namespace {

Handle numberOf(std::uint32_t place, const Slot& slot) {
  return Handle{slot.generation} << HandleTable::PlaceBits | place;
}

std::uint8_t generationAfter(std::uint8_t generation) {
  return generation == UINT8_MAX ? std::uint8_t{1} : static_cast<std::uint8_t>(generation + 1U);
}

}  // namespace

std::uint32_t HandleTable::take() {
  if (_firstFree == NoPlace) {
    if (_used == _slots.size()) grow(_used + 1);
    return static_cast<std::uint32_t>(_used++);
  }
  const std::uint32_t place = _firstFree;
  _firstFree = _slots[place].nextFree;
  --_free;
  return place;
}

Handle HandleTable::open(Entry& entry) {
  const std::uint32_t place = take();
  Slot& slot = _slots[place];
  slot.entry = &entry;
  slot.references = 0;
  slot.kind = Slot::Kind::Entry;
  return numberOf(place, slot);
}

Handle HandleTable::open(RegistryIterator& iterator, Slot::Kind kind) {
  const std::uint32_t place = take();
  Slot& slot = _slots[place];
  slot.iterator = &iterator;
  slot.references = 0;
  slot.kind = kind;
  return numberOf(place, slot);
}

void HandleTable::retire(Handle handle, EntryID id) noexcept {
  Slot& slot = at(handle);
  if (slot.references == 0) {
    close(handle);
  } else {
    slot.kind = Slot::Kind::Dead;
    slot.deadID = id;
    slot.retirement = _retirements++;
  }
}

void HandleTable::close(Handle handle) noexcept {
  Slot& slot = at(handle);
  slot.generation = generationAfter(slot.generation);
  slot.kind = Slot::Kind::Free;
  slot.references = 0;
  slot.number = elsewhere(handle);
  slot.nextFree = _firstFree;
  _firstFree = placeOf(handle);
  ++_free;
}

void HandleTable::closeAll() noexcept {
  for (std::uint32_t place = 0; place < _slots.size(); ++place) {
    if (_slots[place].kind != Slot::Kind::Free) close(numberOf(place, _slots[place]));
  }
}

void HandleTable::reserve(std::size_t count) {
  if (count <= _free) return;
  const std::size_t needed = _used + count - _free;
  if (needed > _slots.size()) grow(needed);
}

// To the next power of two.
void HandleTable::grow(std::size_t needed) {
  if (needed > std::size_t{1} << PlaceBits) throw std::bad_alloc();
  std::size_t size = std::max<std::size_t>(2, _slots.size());
  while (size < needed)
    size *= 2;
  _slots.reserve(size);
  while (_slots.size() < size)
    _slots.push_back(freeSlot(static_cast<std::uint32_t>(_slots.size())));
  _lookUp = {_slots.data(), static_cast<std::uint32_t>(size - 1U)};
}

}  // namespace MemoryRegistry
