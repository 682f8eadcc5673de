#include "platform/registry/memory/DoneMarks.h"

namespace MemoryRegistry {

// Apart from the class, so that a step of a walk stays small.
void DoneMarks::grow(std::uint32_t slot) { _epochs.resize(slot + std::size_t{1}); }

void DoneMarks::startOver() {
  _epochs.assign(_epochs.size(), 0);
  _epoch = 1;
}

}  // namespace MemoryRegistry
