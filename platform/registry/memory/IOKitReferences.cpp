#include "platform/registry/memory/SeamSupport.h"

using namespace MemoryRegistry;

namespace {

// Nobody holds the iterator, or the dead name, any more.
[[gnu::noinline]] void forget(io_object_t object, const Slot& slot) {
  if (slot.isIterator()) slot.iterator->recycle();
  Graph::instance().handles().close(object);
}

[[gnu::cold]] kern_return_t resultForUnknown(io_object_t object) {
  return object == 0 ? KERN_SUCCESS : KERN_INVALID_NAME;
}

}  // namespace

kern_return_t IOObjectRetain(io_object_t object) {
  OperationLog::instance().count(Operation::IOObjectRetain);
  Slot* slot = HandleTable::held(object);
  if (slot == nullptr) return resultForUnknown(object);
  ++slot->references;
  return KERN_SUCCESS;
}

kern_return_t IOObjectRelease(io_object_t object) {
  OperationLog::instance().count(Operation::IOObjectRelease);
  Slot* slot = HandleTable::held(object);
  if (slot == nullptr) return resultForUnknown(object);
  if (HandleTable::drop(*slot, object) && slot->kind != Slot::Kind::Entry) forget(object, *slot);
  return KERN_SUCCESS;
}
