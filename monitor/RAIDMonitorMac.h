#pragma once

#include "monitor/RAIDMonitor.h"

namespace RAIDMonitoring {

// The one concrete monitor: its hosts are Thunderbolt devices, read from the I/O Registry.
// Ownership, thread and failure are those of RAIDMonitor.
class RAIDMONITORING_EXPORT RAIDMonitorMac : public RAIDMonitor {
 public:
  // As CreateRAIDMonitor() makes it.
  RAIDMonitorMac();
  ~RAIDMonitorMac() override;

  void startMonitoring() override;
  void stopMonitoring() override;

  // Null unless the device is a Thunderbolt device. Two calls with one device make two hosts.
  RAIDHost* RAIDHostFromDevice(const Pelago::Device& device) override;
};

}  // namespace RAIDMonitoring
