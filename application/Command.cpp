#include "application/Command.h"

#include "application/StandardError.h"
#include "application/commands/CheckCommand.h"
#include "application/commands/CompletionsCommand.h"
#include "application/commands/ListCommand.h"
#include "application/commands/MetricsCommand.h"
#include "application/commands/RecordCommand.h"
#include "application/commands/ReportCommand.h"
#include "application/commands/SlotsCommand.h"
#include "application/commands/WatchCommand.h"

namespace Program {
namespace {

template <class... Kinds>
std::vector<std::unique_ptr<Command>> makeEach() {
  std::vector<std::unique_ptr<Command>> commands;
  (commands.push_back(std::make_unique<Kinds>()), ...);
  return commands;
}

}  // namespace

Command::~Command() = default;

ExitStatus Command::refuse(const std::string& reason, StandardOutput&) const {
  printError("raidmonitor: " + reason);
  printError(std::string("Try 'raidmonitor ") + name() + " --help'.");
  return WrongUsage;
}

std::vector<std::unique_ptr<Command>> makeCommands() {
  return makeEach<WatchCommand, ListCommand, SlotsCommand, ReportCommand, RecordCommand,
                  CheckCommand, MetricsCommand, CompletionsCommand>();
}

}  // namespace Program
