#pragma once

#include "application/Options.h"

namespace Program {

class StandardOutput;

// One command of the program: how it is asked for, and what it does.
struct Command {
  // What its command line takes beyond what every command's takes.
  enum Takes : unsigned { Nothing = 0, Pace = 1, Handles = 2 };

  const char* name;
  const char* summary;
  const char* details;  // the end of its help
  unsigned takes;
  void (*run)(const Options& options, StandardOutput& output);
};

// The exit statuses.
enum ExitStatus : int { Success = 0, Failure = 1, WrongUsage = 2 };

// Reads the command line and does what it says: runs a command, or prints the help or the version
// that it asks for. Wrong usage is explained on standard error. What the command throws is passed
// on.
ExitStatus runCommandLine(int argc, const char* const* argv, StandardOutput& output);

}  // namespace Program
