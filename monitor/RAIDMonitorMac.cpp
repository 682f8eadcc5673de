#include "monitor/RAIDMonitorMac.h"

#include "platform/pelago/Device.h"
#include "thunderbolt/ThunderboltDevice.h"

namespace RAIDMonitoring {

RAIDMonitor* RAIDMonitor::CreateRAIDMonitor() { return new RAIDMonitorMac; }

RAIDMonitorMac::RAIDMonitorMac() = default;

RAIDMonitorMac::~RAIDMonitorMac() = default;

void RAIDMonitorMac::startMonitoring() { RAIDMonitor::startMonitoring(); }

void RAIDMonitorMac::stopMonitoring() { RAIDMonitor::stopMonitoring(); }

RAIDHost* RAIDMonitorMac::RAIDHostFromDevice(const Pelago::Device& device) {
  if (device.type != Pelago::Device::ThunderboltType) return nullptr;
  return new ThunderboltDevice(device.id);
}

}  // namespace RAIDMonitoring
