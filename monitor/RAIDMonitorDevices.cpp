#include <algorithm>

#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "platform/pelago/Reference.h"

// Devices that arrive become hosts; with devices that leave their hosts go.

namespace RAIDMonitoring {

void RAIDMonitor::deviceAppeared(const Pelago::Device& device) {
  Pelago::Reference<RAIDHost> held(RAIDHostFromDevice(device));
  if (!held) return;
  _hosts.insert(held.get());
  RAIDHost* host = held.release();  // the monitor's own from here on
  for (RAIDVolume* volume : host->raidVolumes()) {
    if (_volumes.count(volume->uuid()) == 0 && volume->state() != VolumeUnknown) {
      notifyRAIDApparition(volume);
    }
  }
}

// Announced volumes are found by UUID, not by object: a set that was announced through another host
// leaves through this one, as this one's object.
void RAIDMonitor::deviceDisappeared(const Pelago::Device& device) {
  const auto place = std::find_if(_hosts.begin(), _hosts.end(), [&device](RAIDHost* host) {
    return host->matchesDevice(device);
  });
  if (place == _hosts.end()) return;
  RAIDHost* host = *place;
  for (RAIDVolume* volume : host->raidVolumes()) {
    if (_volumes.count(volume->uuid()) != 0 && volume->state() != VolumeUnknown) {
      notifyRAIDDisparition(volume);
    }
  }
  _hosts.erase(host);
  host->deref();
}

}  // namespace RAIDMonitoring
