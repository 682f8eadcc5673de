#include "platform/registry/memory/DoneMarks.h"

namespace MemoryRegistry {

void DoneMarks::startOver() {
  _epochs.assign(_epochs.size(), 0);
  _epoch = 1;
}

}  // namespace MemoryRegistry
