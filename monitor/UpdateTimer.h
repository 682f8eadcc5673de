#pragma once

#include "monitor/RAIDMonitor.h"
#include "platform/pelago/Timer.h"

namespace RAIDMonitoring {

// Has a monitor refresh at every expiry.
// Ownership: the monitor's, which is not the timer's own.
// Not exported, as it would be with the class that it is nested in.
class RAIDMONITORING_NO_EXPORT RAIDMonitor::UpdateTimer : public Pelago::Timer {
 public:
  explicit UpdateTimer(RAIDMonitor* monitor);
  ~UpdateTimer() override;

  void timeout() override;

 private:
  RAIDMonitor* _monitor;
};

}  // namespace RAIDMonitoring
