#pragma once

#include <optional>
#include <string>

#include "platform/pelago/Clock.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace Program {

// Which registry a command looks at, and for how long.
struct RegistryOptions {
  std::optional<std::string> registry;  // none: the default one
  std::optional<Pelago::Milliseconds> until;
  bool log = false;
  bool pace = false;
};

// --registry and --until.
void addSourceOptions(CLI::App& parser, RegistryOptions& options);

// Those and --log; `log` says what that does there. --pace is added by
// the commands that show a replay while it goes on.
void addRegistryOptions(CLI::App& parser, RegistryOptions& options, const char* log);
void addPaceOption(CLI::App& parser, RegistryOptions& options);

// An option that takes a number of milliseconds, in decimal digits alone: the option parser itself
// would read 010 as octal.
CLI::Option* addMillisecondsOption(CLI::App& parser, const char* name,
                                   std::optional<Pelago::Milliseconds>& value,
                                   const char* description);

// For the name of a file or folder: why it is none, or nothing.
std::string reasonAgainstEmptyName(const std::string& name);

// What --log does where the output is one answer.
constexpr const char* LogOnStandardError = "Show the library's log on standard error";

}  // namespace Program
