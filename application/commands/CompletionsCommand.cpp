#include "application/commands/CompletionsCommand.h"

#include <CLI/CLI.hpp>

#include "application/StandardOutput.h"
#include "application/completions/BashCompletion.h"
#include "application/completions/CommandTable.h"
#include "application/completions/FishCompletion.h"
#include "application/completions/ZshCompletion.h"

namespace Program {
namespace {

using Script = std::string (*)(const CommandTable&);

// Null for a shell that it knows nothing of.
Script scriptFor(const std::string& shell) {
  if (shell == "bash") return bashCompletion;
  if (shell == "zsh") return zshCompletion;
  if (shell == "fish") return fishCompletion;
  return nullptr;
}

}  // namespace

const char* CompletionsCommand::details() const {
  return "An installation has put these where the shells look by themselves. Otherwise:\n"
         "  bash  source <(raidmonitor completions bash)\n"
         "  zsh   source <(raidmonitor completions zsh), after compinit\n"
         "  fish  raidmonitor completions fish | source";
}

void CompletionsCommand::addOptions(CLI::App& parser) {
  _commandLine = parser.get_parent();
  parser.add_option("SHELL", _shell, "bash, zsh or fish")->required()->type_name("");
  parser.callback([this] {
    if (scriptFor(_shell) == nullptr) {
      throw CLI::ValidationError("SHELL", "'" + _shell + "' is not bash, zsh or fish");
    }
  });
}

ExitStatus CompletionsCommand::run(StandardOutput& output) {
  output.write(scriptFor(_shell)(commandTableOf(*_commandLine)));
  return Success;
}

}  // namespace Program
