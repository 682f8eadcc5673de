#pragma once

#include "application/Command.h"

namespace Program {

// Reads the command line and does what it says: runs a command, or prints the help or the version
// that it asks for. Wrong usage is explained on standard error. What the command throws is passed
// on.
ExitStatus runCommandLine(int argc, const char* const* argv, StandardOutput& output);

}  // namespace Program
