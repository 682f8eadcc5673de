#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "application/session/Snapshot.h"
#include "platform/pelago/Clock.h"

namespace Program {

class Session;

// What there is at the end of a moment.
struct Overview {
  std::vector<DeviceSnapshot> enclosures;
  std::map<RAIDMonitoring::RAIDVolumeState, std::size_t> volumes;  // how many are in each state
  Pelago::Milliseconds lastLook = 0;
};

// A volume that several enclosures show counts once.
Overview overviewOf(const Session& session);

}  // namespace Program
