#pragma once

#include "application/Options.h"

namespace Program {

class StandardOutput;

// The commands. What can't go on throws: SourceError for a registry, and whatever the standard
// library throws. A failed write to the output ends a command early; the caller finds it there.

// Prints a line for every event until the recording ends, or until SIGINT or SIGTERM.
void runWatch(const Options& options, StandardOutput& output);

// Print the state that the same run ends with: the volumes of each enclosure, and its bays.
void runList(const Options& options, StandardOutput& output);
void runSlots(const Options& options, StandardOutput& output);

}  // namespace Program
