#include "application/completions/FishCompletion.h"

#include <fmt/format.h>

#include "application/completions/CommandTable.h"

namespace Program {
namespace {

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') result += '\\';
    result += c;
  }
  return result + "'";
}

std::string actionFor(const ValueKind& value) {
  switch (value.completion) {
    case ValueKind::Completion::Path:
      return " -r -F";
    case ValueKind::Completion::Folder:
      return " -x -a '(__fish_complete_directories (commandline -ct))'";
    case ValueKind::Completion::Executable:
      return " -x -a '(__fish_complete_command)'";
    case ValueKind::Completion::Words:
      return fmt::format(" -x -a '{}'", fmt::join(value.words, " "));
    case ValueKind::Completion::None:
      break;
  }
  return " -x";
}

std::string line(const std::string& condition, const OptionEntry& option) {
  return fmt::format("complete -c raidmonitor -n {} -l {} -d {}{}\n", quoted(condition),
                     option.name.substr(2), quoted(option.description),
                     option.takesValue() ? actionFor(option.value) : "");
}

std::string linesFor(const CommandEntry& command) {
  const std::string condition = "__raidmonitor_command_is " + command.name;
  std::string lines;
  for (const OptionEntry& option : command.options)
    lines += line(condition, option);
  if (command.argument) {
    lines += fmt::format("complete -c raidmonitor -n {}{}\n", quoted(condition),
                         actionFor(command.argument->value));
  }
  return lines;
}

std::string optionsWithValue(const CommandTable& table) {
  std::string names;
  for (const OptionEntry& option : table.options) {
    if (option.takesValue()) names += " " + option.name;
  }
  return names;
}

}  // namespace

std::string fishCompletion(const CommandTable& table) {
  std::string text = fmt::format(
      R"(# Completion of raidmonitor's command line for fish: raidmonitor completions fish

function __raidmonitor_command
    set -l skip 0
    for word in (commandline -opc)[2..-1]
        if test $skip = 1
            set skip 0
        else if contains -- $word{0}
            set skip 1
        else if not string match -q -- '-*' $word
            echo $word
            return 0
        end
    end
    return 1
end

function __raidmonitor_command_is
    contains -- $argv[1] (__raidmonitor_command)
end

complete -c raidmonitor -f
)",
      optionsWithValue(table));
  for (const OptionEntry& option : table.options)
    text += line("not __raidmonitor_command", option);
  for (const CommandEntry& command : table.commands) {
    text += fmt::format("complete -c raidmonitor -n 'not __raidmonitor_command' -a {} -d {}\n",
                        command.name, quoted(command.summary));
  }
  for (const CommandEntry& command : table.commands)
    text += linesFor(command);
  return text;
}

}  // namespace Program
