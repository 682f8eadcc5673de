#include "monitor/UpdateTimer.h"

namespace RAIDMonitoring {

RAIDMonitor::UpdateTimer::UpdateTimer(RAIDMonitor* monitor) : _monitor(monitor) {}

RAIDMonitor::UpdateTimer::~UpdateTimer() = default;

void RAIDMonitor::UpdateTimer::timeout() { _monitor->refresh(); }

}  // namespace RAIDMonitoring
