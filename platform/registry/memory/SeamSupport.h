#pragma once

#include "platform/registry/memory/Graph.h"
#include "platform/registry/memory/MemoryRegistrySeam.h"
#include "platform/registry/memory/OperationLog.h"

// What the operations of the seam have in common.

namespace MemoryRegistry {

// The entry that a handle stands for, or the error that an operation on the handle has.
struct EntryOrError {
  Entry* entry;
  kern_return_t error;
};

[[gnu::cold]] inline EntryOrError noEntry(const Slot* slot) {
  const bool isIterator = slot != nullptr && slot->isIterator();
  return {nullptr, isIterator ? kIOReturnBadArgument : MACH_SEND_INVALID_DEST};
}

inline EntryOrError entryFor(io_object_t handle) {
  const Slot* slot = HandleTable::held(handle);
  if (slot == nullptr || slot->kind != Slot::Kind::Entry) return noEntry(slot);
  return {slot->entry, kIOReturnSuccess};
}

// Null for everything but a living iterator.
inline RegistryIterator* iteratorFor(io_iterator_t handle) {
  const Slot* slot = HandleTable::held(handle);
  return slot != nullptr && slot->isIterator() ? slot->iterator : nullptr;
}

// What an operation returns that was told to fail, and whose handle is 0 either way.
inline kern_return_t resultOf(Failure failure) {
  return failure == Failure::NullSuccess ? kIOReturnSuccess : kIOReturnError;
}

}  // namespace MemoryRegistry
