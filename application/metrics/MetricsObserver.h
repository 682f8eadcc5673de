#pragma once

#include <string>

#include "application/metrics/Metrics.h"
#include "application/metrics/SlotMemory.h"
#include "application/session/LookFailures.h"
#include "application/session/SessionObserver.h"

namespace Program {

class Session;

// Counts what a session tells, and says how everything is.
class MetricsObserver : public SessionObserver {
 public:
  explicit MetricsObserver(Expectations expected);

  // As of now: after a moment is over. `source` is what Metrics::source says.
  Metrics metricsOf(const Session& session, const std::string& source);

  void deviceAppeared(std::uint64_t uid) override;
  void deviceDisappeared(std::uint64_t uid) override;
  void lookFailed() override;
  void logged(Pelago::Logger::Level level, const std::string& category,
              const std::string& text) override;
  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;

 private:
  Expectations _expected;
  EventCounts _events;
  LookFailures _failures;
  SlotMemory _slots;
};

}  // namespace Program
