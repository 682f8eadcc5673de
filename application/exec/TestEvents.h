#pragma once

#include <string>
#include <vector>

#include "application/exec/Outcome.h"
#include "application/watch/WatchEvent.h"

namespace Program {

class StandardOutput;

// One event of each kind for which a program is run, of a volume that does not exist.
std::vector<WatchEvent> testEvents();

// Hands each to the program, one after the other, and prints what became of it. True when all were
// taken: the program was started, and ended in time with exit status 0.
bool sendTestEvents(const std::vector<std::string>& command, const ProgramLimits& limits,
                    StandardOutput& output);

}  // namespace Program
