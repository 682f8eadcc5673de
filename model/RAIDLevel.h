#pragma once

#include <cstdint>
#include <string>

namespace RAIDMonitoring {

// How a set spreads its data over its members. The numbers are part of the binary interface.
enum RAIDLevel : std::int32_t {
  LevelUnknown = -1,  // no known level has been read yet
  LevelStripe = 0,
  LevelMirror = 1,
  LevelConcat = 2,
};

// Stores in `level` what a set's level text means; a text that is none of the three leaves it
// alone.
void readRAIDLevel(const std::string& name, RAIDLevel& level);

}  // namespace RAIDMonitoring
