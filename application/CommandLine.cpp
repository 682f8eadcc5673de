#include "application/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdio>

#include "application/Commands.h"
#include "application/StandardOutput.h"
#include "application/TextCharacters.h"
#include "application/Version.h"

namespace Program {
namespace {

constexpr const char* Description =
    "Watches software RAID sets in Thunderbolt enclosures: which volumes there are,\n"
    "how they are, and in which bay each of their disks sits.";

constexpr const char* ProgramDetails =
    "Exit status: 0 done; 1 a registry can't be read or the output can't be\n"
    "written; 2 wrong usage. Colour is used on a terminal only, and not when NO_COLOR\n"
    "is set. 'raidmonitor COMMAND --help' tells more.";

constexpr const char* EndState =
    "Shows the state that the same watch ends with; on the live registry the state\n"
    "after two seconds.";

const Command commands[] = {
    {"watch", "Print a line for every event",
     "For people a line shows the time, what happened (new, now, gone), the volume,\n"
     "its level and state, the bays of its disks and the enclosure. A disk that is\n"
     "not online has its state behind its bay; ? is a bay that is not known. A volume\n"
     "that changes its state is reported twice.\n"
     "SIGINT and SIGTERM end it in order, with exit status 0.",
     Command::Pace | Command::Handles, runWatch},
    {"list", "Print the volumes of each enclosure", EndState, Command::Nothing, runList},
    {"slots", "Print each enclosure's bays and who sits in them", EndState, Command::Nothing,
     runSlots},
};

constexpr const char* Version = "raidmonitor " RAIDMONITOR_VERSION;

// Decimal digits alone: the option parser itself would read 010 as octal.
Pelago::Milliseconds parseMilliseconds(const std::string& text) {
  const bool digits = !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
    return std::isdigit(c) != 0;
  });
  if (!digits)
    throw CLI::ValidationError("--until", "'" + text + "' is not a number of milliseconds");
  try {
    return std::stoll(text);
  } catch (const std::out_of_range&) {
    throw CLI::ValidationError("--until", text + " is too large");
  }
}

void addOptions(CLI::App& parser, const Command& command, Options& options) {
  parser
      .add_option("--registry", options.registry,
                  "An archive (a file) or a recording (a folder) to read")
      ->type_name("PATH");
  parser.add_flag("--json", options.json, "JSON for programs");
  parser.add_flag("--log", options.log,
                  (command.takes & Command::Handles) != 0U
                      ? "Show the library's log among the events"
                      : "Show the library's log on standard error");
  parser
      .add_option_function<std::string>(
          "--until",
          [&options](const std::string& text) { options.until = parseMilliseconds(text); },
          "End there: nothing due later happens")
      ->type_name("MS");
  if ((command.takes & Command::Pace) != 0U) {
    parser.add_flag("--pace", options.pace, "Replay at the speed at which it was recorded");
  }
  if ((command.takes & Command::Handles) != 0U) {
    parser.add_flag("--handles", options.handles,
                    "In the end, show what is still held of the registry");
  }
}

void addCommand(CLI::App& parser, const Command& command, Options& options) {
  CLI::App& added = *parser.add_subcommand(command.name, command.summary);
  added.group("Commands");
  added.set_help_flag("--help", "Show this help");
  added.set_version_flag("--version", Version, "Show the version");
  addOptions(added, command, options);
  added.footer(command.details);
}

void configure(CLI::App& parser, Options& options) {
  parser.set_help_flag("--help", "Show this help");
  parser.set_version_flag("--version", Version, "Show the version");
  parser.require_subcommand(1);
  parser.footer(ProgramDetails);
  parser.get_formatter()->column_width(22);
  parser.get_formatter()->label("SUBCOMMAND", "COMMAND");
  for (const Command& command : commands)
    addCommand(parser, command, options);
}

std::string reasonOf(const CLI::App& parser, const CLI::ParseError& error) {
  if (!parser.get_subcommands().empty()) return error.what();
  const std::vector<std::string> others = parser.remaining();
  const bool missing = others.empty() || others.front().front() == '-';
  return missing ? "a command is missing" : "'" + others.front() + "' is no command";
}

ExitStatus explain(const CLI::App& parser, const CLI::ParseError& error) {
  const std::string reason = printable(reasonOf(parser, error), Charset::Unicode);
  const auto chosen = parser.get_subcommands();
  const std::string command = chosen.empty() ? "" : " " + chosen.front()->get_name();
  std::fprintf(stderr, "raidmonitor: %s\nTry 'raidmonitor%s --help'.\n", reason.c_str(),
               command.c_str());
  return WrongUsage;
}

const Command& chosenCommand(const CLI::App& parser) {
  const std::string name = parser.get_subcommands().front()->get_name();
  return *std::find_if(std::begin(commands), std::end(commands),
                       [&name](const Command& command) { return name == command.name; });
}

}  // namespace

ExitStatus runCommandLine(int argc, const char* const* argv, StandardOutput& output) {
  CLI::App parser(Description, "raidmonitor");
  Options options;
  configure(parser, options);
  try {
    parser.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    output.write(parser.help());
    return Success;
  } catch (const CLI::CallForVersion& version) {
    output.writeLine(version.what());
    return Success;
  } catch (const CLI::ParseError& error) {
    return explain(parser, error);
  }
  chosenCommand(parser).run(options, output);
  return Success;
}

}  // namespace Program
