#pragma once

#include <functional>
#include <string>
#include <vector>

#include "application/exec/Outcome.h"

namespace Program {

// One run of a program.
struct ProgramCall {
  std::string event;                     // what for: "raid-updated"
  std::string input;                     // on its standard input
  std::vector<std::string> environment;  // all of it: "NAME=value"
};

// Runs `command` (the program, looked up in PATH, and its arguments as they are) and waits for its
// end. It is the head of a process group of its own, which gets SIGTERM, and later SIGKILL, when it
// takes too long or `givenUp` says that nobody waits any longer. Its standard output is the
// process's own, which is standard error.
//
// Thread:  any, with SIGPIPE ignored or blocked.
// Failure: the outcome says.
Outcome runProgram(const std::vector<std::string>& command, const ProgramCall& call,
                   const ProgramLimits& limits, const std::function<bool()>& givenUp);

}  // namespace Program
