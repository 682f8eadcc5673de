#pragma once

#include <cstdint>
#include <string>

namespace RAIDMonitoring {

// How a set spreads its data over its members. The numbers are part of the binary interface.
//
// \code
// // Whether a set of that level still has all its data when one disk is gone.
// bool outlivesADisk(RAIDMonitoring::RAIDLevel level) {
//   return level == RAIDMonitoring::LevelMirror;
// }
// \endcode
enum RAIDLevel : std::int32_t {
  LevelUnknown = -1,  // no known level has been read yet
  LevelStripe = 0,    // in turn over all of them: fast, and lost with any one
  LevelMirror = 1,    // the same on each
  LevelConcat = 2,    // one after the other, as one large disk
};

// Stores in `level` what a set's level text means; a text that is none of the three leaves it
// alone. Any thread; nothing fails.
void readRAIDLevel(const std::string& name, RAIDLevel& level);

}  // namespace RAIDMonitoring
