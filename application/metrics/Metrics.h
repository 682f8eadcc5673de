#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "application/check/Expectations.h"
#include "application/session/Snapshot.h"

namespace Program {

// How often a session has told something, from its start.
struct EventCounts {
  std::uint64_t deviceAppeared = 0;
  std::uint64_t deviceDisappeared = 0;
  std::uint64_t raidAppeared = 0;
  std::uint64_t raidUpdated = 0;
  std::uint64_t raidDisappeared = 0;
  // Of disks in enclosures with a volume that is degraded or offline, once for each such volume.
  std::uint64_t degradedMemberChanges = 0;
};

// All that the metrics tell of one look.
struct Metrics {
  std::string source;     // "live", "archive" or "demonstration"
  std::int64_t time = 0;  // of the look, in milliseconds of Unix time
  bool complete = true;   // nothing kept it from seeing everything
  std::vector<EnclosureVolumes> enclosures;
  EventCounts events;
  Expectations expected;
};

// In the text format of Prometheus.
std::string metricsText(const Metrics& metrics);

}  // namespace Program
