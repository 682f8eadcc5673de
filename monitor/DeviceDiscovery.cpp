#include "monitor/DeviceDiscovery.h"

namespace RAIDMonitoring {

RAIDMonitor::DeviceDiscovery::DeviceDiscovery(RAIDMonitor* monitor) : _monitor(monitor) {}

RAIDMonitor::DeviceDiscovery::~DeviceDiscovery() = default;

void RAIDMonitor::DeviceDiscovery::deviceAppeared(const Pelago::Device& device) {
  _monitor->deviceAppeared(device);
}

void RAIDMonitor::DeviceDiscovery::deviceDisappeared(const Pelago::Device& device) {
  _monitor->deviceDisappeared(device);
}

void RAIDMonitor::DeviceDiscovery::deviceUpdated(const Pelago::Device& /*device*/) {}

void RAIDMonitor::DeviceDiscovery::hostAppeared(const Pelago::Host& /*host*/) {}

void RAIDMonitor::DeviceDiscovery::hostDisappeared(const Pelago::Host& /*host*/) {}

void RAIDMonitor::DeviceDiscovery::hostUpdated(const Pelago::Host& /*host*/) {}

}  // namespace RAIDMonitoring
