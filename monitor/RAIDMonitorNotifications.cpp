#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Reference.h"

// What is recorded as announced, what is held for it and what clients are told, changed in one
// place.

namespace RAIDMonitoring {

void RAIDMonitor::tell(void (RAIDMonitorClient::*callback)(RAIDVolume*), RAIDVolume* volume) {
  // By number: clients may come and go while they are told.
  std::size_t index = 0;
  while (index < _clients.size())
    (_clients[index++]->*callback)(volume);
}

// An entry that is there already is overwritten, and what it held keeps its reference: callers
// check.
void RAIDMonitor::notifyRAIDApparition(RAIDVolume* volume) {
  Pelago::Reference<RAIDVolume> held(volume);
  _volumes[volume->uuid()] = volume;
  static_cast<void>(held.release());  // the monitor's own from here on
  tell(&RAIDMonitorClient::RAIDAppeared, volume);
}

// Clients first, while the volume is still on record. The reference that is given back is one of
// the volume passed in, on purpose also when another object is on record under its UUID: that one
// keeps the monitor's.
void RAIDMonitor::notifyRAIDDisparition(RAIDVolume* volume) {
  tell(&RAIDMonitorClient::RAIDDisappeared, volume);
  _volumes.erase(volume->uuid());
  volume->deref();
}

void RAIDMonitor::notifyRAIDUpdate(RAIDVolume* volume) {
  tell(&RAIDMonitorClient::RAIDUpdated, volume);
}

}  // namespace RAIDMonitoring
