#pragma once

#include <optional>
#include <string>
#include <vector>

#include "application/completions/ValueKind.h"

namespace CLI {
class App;
}  // namespace CLI

namespace Program {

struct OptionEntry {
  std::string name;  // with its dashes, or an argument's word in the help
  std::string description;
  std::string word;  // for its value in the help; empty: it takes none
  ValueKind value;
  bool repeatable = false;

  bool takesValue() const { return !word.empty(); }
};

struct CommandEntry {
  std::string name;
  std::string summary;
  std::vector<OptionEntry> options;
  std::optional<OptionEntry> argument;
};

// What the command line takes, read off its parser. Descriptions are one line each.
struct CommandTable {
  std::vector<OptionEntry> options;  // before a command
  std::vector<CommandEntry> commands;
};

CommandTable commandTableOf(const CLI::App& parser);

}  // namespace Program
