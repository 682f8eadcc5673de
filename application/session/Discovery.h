#pragma once

#include <cstdint>
#include <optional>
#include <set>

namespace Pelago {
class DiscoveryManager;
}

namespace Program {

class SessionObserver;

// Finds the Thunderbolt devices in the registry, and feeds a discovery manager with what has
// changed since the last look.
//
// Thread:  the event thread only.
// Failure: a look at a registry that does not hold still, or can't be walked, is given up with a
//          line on standard error, and the observer is told; the devices stay as they were.
class Discovery {
 public:
  Discovery(Pelago::DiscoveryManager& manager, SessionObserver& observer)
      : _manager(manager), _observer(observer) {}

  // First every device that is gone, then every new one, each in ascending order of the UID. The
  // observer hears of each device just before the manager's clients do.
  void look();

  // The UIDs of the switches that are devices; none when the walk could not be completed.
  static std::optional<std::set<std::uint64_t>> devicesInRegistry();

 private:
  void disappear(std::uint64_t uid);
  void appear(std::uint64_t uid);

  Pelago::DiscoveryManager& _manager;
  SessionObserver& _observer;
  std::set<std::uint64_t> _devices;
};

}  // namespace Program
