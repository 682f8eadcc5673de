#include "application/session/LookFailures.h"

#include <algorithm>
#include <iterator>

#include "application/session/Session.h"
#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Application.h"

namespace Program {
namespace {

constexpr Pelago::Milliseconds RefreshPeriod = 2000;

// Parts of the library's texts, which stay as they are. What it could not find in a registry that
// it could search is an answer, and not here.
constexpr const char* BridgeFailures[] = {"could not create iterator for ports",
                                          "Cannot find back the PCI Bridge object",
                                          "couldn't find PCI Bridge registry entry"};
constexpr const char* RegistryFailures[] = {"iterator", "cannot get set members", "Out of memory?"};

template <std::size_t Count>
bool holdsOneOf(const std::string& text, const char* const (&parts)[Count]) {
  return std::any_of(std::begin(parts), std::end(parts),
                     [&text](const char* part) { return text.find(part) != std::string::npos; });
}

Pelago::Milliseconds lookAt(Pelago::Milliseconds moment) { return moment / RefreshPeriod; }

bool isComingUp(const Session& session) {
  const auto hosts = session.hosts();
  return std::any_of(hosts.begin(), hosts.end(), [](const RAIDMonitoring::RAIDHost* host) {
    return host->pciBridgePath().empty();
  });
}

}  // namespace

void LookFailures::add(Cause cause, const std::string& reason) {
  const Pelago::Milliseconds look = lookAt(Pelago::Application::instance()->now());
  if (look != _look) _failures.clear();
  _look = look;
  const bool known =
      std::any_of(_failures.begin(), _failures.end(),
                  [&reason](const auto& failure) { return failure.reason == reason; });
  if (!known) _failures.push_back({cause, reason});
}

void LookFailures::lookFailed() {
  add(Cause::Registry, "the registry could not be searched for devices");
}

void LookFailures::logged(Pelago::Logger::Level, const std::string&, const std::string& text) {
  const std::string reason = "the registry could not be read: " + text;
  if (holdsOneOf(text, BridgeFailures)) {
    add(Cause::Bridge, reason);
  } else if (holdsOneOf(text, RegistryFailures)) {
    add(Cause::Registry, reason);
  }
}

void LookFailures::RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) {
  const std::string& name = volume->name().empty() ? volume->uuid() : volume->name();
  add(Cause::Registry, "volume " + name + " has gone just now");
}

std::vector<std::string> LookFailures::ofLastLook(const Session& session) const {
  std::vector<std::string> reasons;
  // A refresh that came late, after the computer slept say, may even be of a later look than it was
  // due for.
  if (_look < lookAt(session.lastDue())) return reasons;
  const bool comingUp = isComingUp(session);
  for (const Failure& failure : _failures) {
    if (failure.cause == Cause::Registry || !comingUp) reasons.push_back(failure.reason);
  }
  return reasons;
}

}  // namespace Program
