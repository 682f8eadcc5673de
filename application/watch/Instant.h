#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "application/watch/WatchEvent.h"

namespace Program {

// One thing that has happened, and what it took with it.
struct Cause {
  WatchEvent event;
  std::vector<VolumeEvent> lost;  // the volumes of an enclosure that has gone
};

// Gathers the events of one moment by what they come from: a change that is reported again is the
// same one, and volumes go with their enclosure.
class Instant {
 public:
  void add(const WatchEvent& event);

  // In the order in which they began. Afterwards it is empty.
  std::vector<Cause> take();

 private:
  void add(Pelago::Milliseconds time, const DeviceEvent& event);
  void add(Pelago::Milliseconds time, const VolumeEvent& event);
  template <class Other>
  void add(Pelago::Milliseconds time, const Other& event) {
    _causes.push_back({{time, event}, {}});
  }

  VolumeEvent* earlierReport(const VolumeEvent& event);
  Cause* departureOf(std::uint64_t enclosure);
  Cause* departureBehind(const VolumeEvent& lost);

  std::vector<Cause> _causes;
  std::optional<std::size_t> _leaving;  // the enclosure that is being taken leave of
};

}  // namespace Program
