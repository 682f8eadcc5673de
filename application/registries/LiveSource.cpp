#include "application/registries/LiveSource.h"

#include <algorithm>
#include <utility>

namespace Program {

LiveSource::LiveSource(std::unique_ptr<Pelago::Clock> clock) : _clock(std::move(clock)) {}

void LiveSource::prepareLook() {
  // Looks that were missed, while the machine slept say, are not made up for.
  _nextLook = std::max(_nextLook + LookPeriod, _clock->now());
}

}  // namespace Program
