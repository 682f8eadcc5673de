#include "application/completions/CommandTable.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace Program {
namespace {

std::string onOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

OptionEntry entryOf(const CLI::Option& option) {
  OptionEntry entry;
  const bool positional = !option.nonpositional();
  entry.name = option.get_name(positional);
  entry.description = onOneLine(option.get_description());
  if (positional) {
    entry.word = entry.name;
  } else if (option.get_expected_max() > 0) {
    entry.word = option.get_type_name();
  }
  if (entry.takesValue()) entry.value = valueKindOf(entry.word);
  entry.repeatable = option.get_expected_max() > 1;
  return entry;
}

std::vector<OptionEntry> optionsOf(const CLI::App& parser) {
  std::vector<OptionEntry> entries;
  for (const CLI::Option* option : parser.get_options()) {
    if (option->nonpositional()) entries.push_back(entryOf(*option));
  }
  return entries;
}

CommandEntry commandOf(const CLI::App& parser, const CLI::Option* shared) {
  CommandEntry command;
  command.name = parser.get_name();
  command.summary = onOneLine(parser.get_description());
  command.options = optionsOf(parser);
  if (shared != nullptr) command.options.push_back(entryOf(*shared));
  for (const CLI::Option* option : parser.get_options()) {
    if (!option->nonpositional()) command.argument = entryOf(*option);
  }
  return command;
}

}  // namespace

CommandTable commandTableOf(const CLI::App& parser) {
  CommandTable table;
  table.options = optionsOf(parser);
  for (const CLI::App* command : parser.get_subcommands([](const CLI::App*) { return true; }))
    table.commands.push_back(commandOf(*command, parser.get_config_ptr()));
  return table;
}

}  // namespace Program
