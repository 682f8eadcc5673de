#include "application/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "application/Command.h"
#include "application/HelpFormatter.h"
#include "application/Options.h"
#include "application/StandardError.h"
#include "application/StandardOutput.h"
#include "application/Version.h"
#include "application/configuration/ConfigurationFile.h"
#include "application/text/TextCharacters.h"

namespace Program {
namespace {

constexpr const char* Description =
    "Watches software RAID sets in Thunderbolt enclosures: which volumes there are,\n"
    "how they are, and in which bay each of their disks sits.\n";

constexpr const char* ProgramDetails =
    "On a Mac it looks at that Mac; elsewhere, at a built-in demonstration; with\n"
    "--registry, at something recorded. Begin with 'raidmonitor slots', which shows\n"
    "the disks by their bays, and 'raidmonitor watch'; 'raidmonitor COMMAND --help'\n"
    "tells more.\n"
    "Exit status: 0 done; 1 a registry cannot be read or the output cannot be\n"
    "written; 2 wrong usage. 'check' has a plugin's own. Colour is used on a terminal\n"
    "only, and not when NO_COLOR is set.";

constexpr const char* Version = "raidmonitor " RAIDMONITOR_VERSION;

using Commands = std::vector<std::unique_ptr<Command>>;

void addCommand(CLI::App& parser, Command& command) {
  CLI::App& added = *parser.add_subcommand(command.name(), command.summary());
  added.group("Commands");
  added.set_help_flag("--help", "Show this help");
  added.set_version_flag("--version", Version, "Show the version");
  added.fallthrough();  // --config is the program's, and may stand after the command
  command.addOptions(added);
  added.footer(command.details());
}

void configure(CLI::App& parser, const Commands& commands) {
  parser.set_help_flag("--help", "Show this help");
  parser.set_version_flag("--version", Version, "Show the version");
  parser.require_subcommand(1);
  parser.footer(ProgramDetails);
  const CLI::Option& config = *parser.set_config("--config", "", "Take options from a TOML file")
                                   ->type_name("FILE")
                                   ->check(reasonAgainstEmptyName);
  parser.config_formatter(std::make_shared<ConfigurationFile>(parser));
  parser.formatter(std::make_shared<HelpFormatter>(config));
  parser.get_formatter()->column_width(22);
  parser.get_formatter()->label("SUBCOMMAND", "COMMAND");
  for (const std::unique_ptr<Command>& command : commands)
    addCommand(parser, *command);
}

std::string reasonOf(const CLI::App& parser, const CLI::ParseError& error) {
  if (dynamic_cast<const CLI::FileError*>(&error) != nullptr) {
    return "--config: cannot read " + parser.get_config_ptr()->as<std::string>();
  }
  const bool ofConfig = dynamic_cast<const CLI::ConfigError*>(&error) != nullptr ||
                        dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr;
  if (ofConfig || !parser.get_subcommands().empty()) return error.what();
  const std::vector<std::string> others = parser.remaining();
  const bool missing = others.empty() || others.front().front() == '-';
  return missing ? "a command is missing" : "'" + others.front() + "' is no command";
}

Command& chosenCommand(const CLI::App& parser, const Commands& commands) {
  const std::string name = parser.get_subcommands().front()->get_name();
  return **std::find_if(commands.begin(), commands.end(),
                        [&name](const auto& command) { return name == command->name(); });
}

ExitStatus explain(const CLI::App& parser, const Commands& commands, const CLI::ParseError& error,
                   StandardOutput& output) {
  const std::string reason = printable(reasonOf(parser, error), Charset::Unicode);
  if (!parser.get_subcommands().empty()) {
    return chosenCommand(parser, commands).refuse(reason, output);
  }
  printError("raidmonitor: " + reason);
  printError("Try 'raidmonitor --help'.");
  return WrongUsage;
}

}  // namespace

ExitStatus runCommandLine(int argc, const char* const* argv, StandardOutput& output) {
  CLI::App parser(Description, "raidmonitor");
  const Commands commands = makeCommands();
  configure(parser, commands);
  try {
    parser.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    output.write(parser.help());
    return Success;
  } catch (const CLI::CallForVersion& version) {
    output.writeLine(version.what());
    return Success;
  } catch (const CLI::ParseError& error) {
    return explain(parser, commands, error, output);
  }
  return chosenCommand(parser, commands).run(output);
}

}  // namespace Program
