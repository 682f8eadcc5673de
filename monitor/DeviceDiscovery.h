#pragma once

#include "monitor/RAIDMonitor.h"
#include "platform/pelago/DiscoveryClient.h"

namespace RAIDMonitoring {

// Passes on to a monitor what discovery tells about devices; hosts and updates do not concern it.
// Ownership: the monitor's, which is not the adapter's own.
// Not exported, as it would be with the class that it is nested in.
class RAIDMONITORING_NO_EXPORT RAIDMonitor::DeviceDiscovery : public Pelago::DiscoveryClient {
 public:
  explicit DeviceDiscovery(RAIDMonitor* monitor);
  ~DeviceDiscovery() override;

  void deviceAppeared(const Pelago::Device& device) override;
  void deviceDisappeared(const Pelago::Device& device) override;
  void deviceUpdated(const Pelago::Device& device) override;
  void hostAppeared(const Pelago::Host& host) override;
  void hostDisappeared(const Pelago::Host& host) override;
  void hostUpdated(const Pelago::Host& host) override;

 private:
  RAIDMonitor* _monitor;
};

}  // namespace RAIDMonitoring
