#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace Program {

// How far a program that is run for each event may go.
struct ProgramLimits {
  std::chrono::milliseconds time{10000};  // then it is asked to end: SIGTERM
  std::chrono::milliseconds grace{2000};  // after that it is made to: SIGKILL
  std::size_t queue = 100;                // events that wait while it runs for another one
};

// What became of one run of it.
struct Outcome {
  enum class Kind { Taken, NotStarted, Failed, Killed, TooSlow, GivenUp };

  Kind kind = Kind::Taken;
  int number = 0;  // the error, the exit status, or the signal

  bool taken() const { return kind == Kind::Taken; }
};

// "exit status 3", "No such file or directory"
std::string reasonOf(const Outcome& outcome, const ProgramLimits& limits);

}  // namespace Program
