#include "application/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>

namespace Program {
namespace {

Pelago::Milliseconds parseMilliseconds(const char* option, const std::string& text) {
  const bool digits = !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
    return std::isdigit(c) != 0;
  });
  if (!digits) throw CLI::ValidationError(option, "'" + text + "' is not a number of milliseconds");
  try {
    return std::stoll(text);
  } catch (const std::out_of_range&) {
    throw CLI::ValidationError(option, text + " is too large");
  }
}

}  // namespace

CLI::Option* addMillisecondsOption(CLI::App& parser, const char* name,
                                   std::optional<Pelago::Milliseconds>& value,
                                   const char* description) {
  const auto parse = [&value, name](const std::string& text) {
    value = parseMilliseconds(name, text);
  };
  return parser.add_option_function<std::string>(name, parse, description)->type_name("MS");
}

std::string reasonAgainstEmptyName(const std::string& name) {
  return name.empty() ? "the name is empty" : "";
}

void addSourceOptions(CLI::App& parser, RegistryOptions& options) {
  parser
      .add_option("--registry", options.registry,
                  "An archive (a file from ioreg, gzip or not), or a\n"
                  "recording (a folder of them), to read. Without\n"
                  "it: this Mac; elsewhere a built-in demonstration")
      ->type_name("PATH");
  addMillisecondsOption(parser, "--until", options.until, "End there: nothing due later happens");
}

void addRegistryOptions(CLI::App& parser, RegistryOptions& options, const char* log) {
  addSourceOptions(parser, options);
  parser.add_flag("--log", options.log, log);
}

void addPaceOption(CLI::App& parser, RegistryOptions& options) {
  parser.add_flag("--pace", options.pace, "Replay at the speed at which it was recorded");
}

}  // namespace Program
