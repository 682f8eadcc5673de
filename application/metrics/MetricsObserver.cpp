#include "application/metrics/MetricsObserver.h"

#include <chrono>
#include <utility>

#include "application/session/Session.h"

namespace Program {

using RAIDMonitoring::RAIDVolume;

namespace {

// The library's one line about a disk whose state has changed, to the better perhaps, while a
// volume of its enclosure is degraded or offline.
constexpr const char* ChangedMember = "New error detected on RAID";

std::int64_t unixTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

}  // namespace

MetricsObserver::MetricsObserver(Expectations expected) : _expected(std::move(expected)) {}

Metrics MetricsObserver::metricsOf(const Session& session, const std::string& source) {
  Metrics metrics;
  metrics.source = source;
  metrics.time = unixTime();
  metrics.enclosures = _slots.volumesOf(session.hosts());
  metrics.complete = _failures.ofLastLook(session).empty();
  if (!metrics.complete) _slots = {};  // a bay may have been missed, so ask again
  metrics.events = _events;
  metrics.expected = _expected;
  return metrics;
}

void MetricsObserver::deviceAppeared(std::uint64_t) { ++_events.deviceAppeared; }

void MetricsObserver::deviceDisappeared(std::uint64_t) { ++_events.deviceDisappeared; }

void MetricsObserver::lookFailed() { _failures.lookFailed(); }

void MetricsObserver::logged(Pelago::Logger::Level level, const std::string& category,
                             const std::string& text) {
  _failures.logged(level, category, text);
  if (text.find(ChangedMember) != std::string::npos) ++_events.degradedMemberChanges;
}

void MetricsObserver::RAIDAppeared(RAIDVolume*) { ++_events.raidAppeared; }

void MetricsObserver::RAIDDisappeared(RAIDVolume* volume) {
  _failures.RAIDDisappeared(volume);
  ++_events.raidDisappeared;
}

void MetricsObserver::RAIDUpdated(RAIDVolume*) { ++_events.raidUpdated; }

}  // namespace Program
