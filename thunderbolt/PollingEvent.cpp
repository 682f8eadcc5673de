#include "thunderbolt/PollingEvent.h"

#include <utility>

namespace RAIDMonitoring {

PollingEvent::PollingEvent(unsigned type, io_registry_entry_t entry)
    : Pelago::Event(type, nullptr), _entry(entry) {}

PollingEvent::~PollingEvent() {
  if (_entry != 0) IOObjectRelease(_entry);
}

io_registry_entry_t PollingEvent::takeEntry() { return std::exchange(_entry, 0U); }

}  // namespace RAIDMonitoring
