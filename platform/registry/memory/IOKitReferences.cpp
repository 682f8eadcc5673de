#include "platform/registry/memory/SeamSupport.h"

using namespace MemoryRegistry;

namespace {

// Nobody holds the iterator, or the dead name, any more.
[[gnu::noinline]] void forget(io_object_t object, const Slot& slot) {
  if (slot.kind == Slot::Kind::Iterator) slot.iterator->recycle();
  Graph::instance().handles().close(object);
}

}  // namespace

kern_return_t IOObjectRetain(io_object_t object) {
  OperationLog::instance().count(Operation::IOObjectRetain);
  if (object == 0) return KERN_SUCCESS;
  Slot* slot = Graph::instance().handles().held(object);
  if (slot == nullptr) return KERN_INVALID_NAME;
  ++slot->references;
  return KERN_SUCCESS;
}

kern_return_t IOObjectRelease(io_object_t object) {
  OperationLog::instance().count(Operation::IOObjectRelease);
  if (object == 0) return KERN_SUCCESS;
  Slot* slot = Graph::instance().handles().held(object);
  if (slot == nullptr) return KERN_INVALID_NAME;
  --slot->references;
  if (slot->kind != Slot::Kind::Entry && slot->references == 0) forget(object, *slot);
  return KERN_SUCCESS;
}
