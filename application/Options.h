#pragma once

#include <optional>
#include <string>

#include "platform/pelago/Clock.h"

namespace Program {

// What the command line says. A command that has no such option finds it at its default.
struct Options {
  std::optional<std::string> registry;
  std::optional<Pelago::Milliseconds> until;
  bool json = false;
  bool log = false;
  bool handles = false;
  bool pace = false;
};

}  // namespace Program
