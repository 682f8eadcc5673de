#include "application/completions/ZshCompletion.h"

#include <fmt/format.h>

#include "application/completions/CommandTable.h"

namespace Program {
namespace {

// Within single quotes, in a place where zsh looks for brackets and colons.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\'') {
      result += "'\\''";
      continue;
    }
    if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

std::string actionFor(const ValueKind& value) {
  switch (value.completion) {
    case ValueKind::Completion::Path:
      return "_files";
    case ValueKind::Completion::Folder:
      return "_files -/";
    case ValueKind::Completion::Executable:
      return " _command_names -e";  // the space keeps _arguments from putting its own between
    case ValueKind::Completion::Words:
      return fmt::format("({})", fmt::join(value.words, " "));
    case ValueKind::Completion::None:
      break;
  }
  return " ";
}

std::string argumentLine(const OptionEntry& option) {
  const std::string repeated = option.repeatable ? "*" : "";
  const std::string description = escaped(option.description);
  if (!option.takesValue()) return fmt::format("'{}[{}]'", option.name, description);
  return fmt::format("'{}{}=[{}]:{}:{}'", repeated, option.name, description, option.word,
                     actionFor(option.value));
}

std::string argumentLines(const std::vector<OptionEntry>& options, const char* indent) {
  std::string lines;
  for (const OptionEntry& option : options)
    lines += fmt::format(" \\\n{}{}", indent, argumentLine(option));
  return lines;
}

std::string describedCommands(const CommandTable& table) {
  std::string lines;
  for (const CommandEntry& command : table.commands)
    lines += fmt::format("    '{}:{}'\n", command.name, escaped(command.summary));
  return lines;
}

std::string commandCase(const CommandEntry& command) {
  std::string text = fmt::format("    {})\n      _arguments{}", command.name,
                                 argumentLines(command.options, "        "));
  if (command.argument) {
    text += fmt::format(" \\\n        '1:{}:{}'", command.argument->word,
                        actionFor(command.argument->value));
  }
  return text + "\n      ;;\n";
}

}  // namespace

std::string zshCompletion(const CommandTable& table) {
  std::string cases;
  for (const CommandEntry& command : table.commands)
    cases += commandCase(command);
  return fmt::format(R"(#compdef raidmonitor
# Completion of raidmonitor's command line for zsh: raidmonitor completions zsh

_raidmonitor() {{
  local curcontext=$curcontext state line ret=1
  typeset -A opt_args
  local -a subcommands=(
{0}  )
  _arguments -C{1} \
    '(-): :->command' \
    '(-)*:: :->rest' && ret=0
  case $state in
  command) _describe -t commands 'command' subcommands && ret=0 ;;
  rest)
    curcontext=${{curcontext%:*:*}}:raidmonitor-$words[1]:
    case $words[1] in
{2}    esac && ret=0
    ;;
  esac
  return ret
}}

if [[ $funcstack[1] == _raidmonitor ]]; then
  _raidmonitor "$@"
else
  compdef _raidmonitor raidmonitor
fi
)",
                     describedCommands(table), argumentLines(table.options, "    "), cases);
}

}  // namespace Program
