#include "application/exec/Outcome.h"

#include <fmt/format.h>

#include <system_error>

namespace Program {

std::string reasonOf(const Outcome& outcome, const ProgramLimits& limits) {
  switch (outcome.kind) {
    case Outcome::Kind::NotStarted:
      return "cannot be started: " + std::generic_category().message(outcome.number);
    case Outcome::Kind::Failed:
      return fmt::format("exit status {}", outcome.number);
    case Outcome::Kind::Killed:
      return fmt::format("ended by signal {}", outcome.number);
    case Outcome::Kind::TooSlow:
      return fmt::format("took longer than {} ms and was ended", limits.time.count());
    case Outcome::Kind::GivenUp:
      return "was ended, as the watch is over";
    case Outcome::Kind::Taken:
      break;
  }
  return "taken";
}

}  // namespace Program
