#include "application/completions/BashCompletion.h"

#include <fmt/format.h>

#include "application/completions/CommandTable.h"

namespace Program {
namespace {

// Words are taken apart at '=' by bash itself: --color=never is three.
constexpr const char* Functions =
    R"(# Completion of raidmonitor's command line for bash: raidmonitor completions bash
# Runs in bash 3.2 too, which has neither mapfile nor compopt.

_raidmonitor_offer() {
  local word
  while IFS= read -r word; do COMPREPLY+=("$word"); done
}

_raidmonitor_paths() {
  if declare -F _filedir >/dev/null; then
    _filedir "$@"
  else
    compopt -o filenames 2>/dev/null
    _raidmonitor_offer < <(compgen "${1:--f}" -- "$cur")
  fi
}

_raidmonitor_programs() {
  compopt -o filenames 2>/dev/null
  _raidmonitor_offer < <(compgen -c -- "$cur")
}

_raidmonitor_words() {
  _raidmonitor_offer < <(compgen -W "$1" -- "$cur")
}

)";

constexpr const char* Main = R"(
_raidmonitor() {
  local cur=${COMP_WORDS[COMP_CWORD]} command='' option='' arguments=0 i word
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [[ -n $option && $word == '=' ]]; then
      continue
    elif [[ -n $option ]]; then
      option=''
    elif [[ $word == -* ]]; then
      if _raidmonitor_takes_value "$command" "$word"; then option=$word; fi
    elif [[ -z $command ]]; then
      command=$word
    else
      arguments=$((arguments + 1))
    fi
  done
  if [[ -n $option && $cur == '=' ]]; then cur=''; fi
  if [[ -n $option ]]; then
    _raidmonitor_value "$command" "$option"
  elif [[ $cur == -* ]]; then
    _raidmonitor_options "$command"
  elif ((arguments == 0)); then
    _raidmonitor_argument "$command"
  else
    _raidmonitor_options "$command"
  fi
}

complete -F _raidmonitor raidmonitor
)";

std::string joined(const std::vector<std::string>& words) {
  return fmt::format("{}", fmt::join(words, " "));
}

std::string actionFor(const ValueKind& value) {
  switch (value.completion) {
    case ValueKind::Completion::Path:
      return "_raidmonitor_paths";
    case ValueKind::Completion::Folder:
      return "_raidmonitor_paths -d";
    case ValueKind::Completion::Executable:
      return "_raidmonitor_programs";
    case ValueKind::Completion::Words:
      return "_raidmonitor_words '" + joined(value.words) + "'";
    case ValueKind::Completion::None:
      break;
  }
  return ":";
}

std::string valueRows(const std::string& command, const std::vector<OptionEntry>& options) {
  std::string rows;
  for (const OptionEntry& option : options) {
    if (option.takesValue()) {
      rows += fmt::format("    '{} {}') {} ;;\n", command, option.name, actionFor(option.value));
    }
  }
  return rows;
}

std::string optionRow(const std::string& command, const std::vector<OptionEntry>& options) {
  std::vector<std::string> names;
  names.reserve(options.size());
  for (const OptionEntry& option : options)
    names.push_back(option.name);
  return fmt::format("    '{}') _raidmonitor_words '{}' ;;\n", command, joined(names));
}

std::string function(const char* name, const char* subject, const std::string& rows) {
  return fmt::format("{}() {{\n  case {} in\n{}  esac\n}}\n\n", name, subject, rows);
}

// Where there is no argument to give, the options are shown.
std::string argumentRows(const CommandTable& table) {
  std::vector<std::string> commands;
  std::string rows;
  for (const CommandEntry& command : table.commands) {
    commands.push_back(command.name);
    if (!command.argument) continue;
    rows += fmt::format("    '{}') {} ;;\n", command.name, actionFor(command.argument->value));
  }
  rows += fmt::format("    '') _raidmonitor_words '{}' ;;\n", joined(commands));
  return rows + "    *) _raidmonitor_options \"$1\" ;;\n";
}

std::string takesValue(const std::string& command, const std::vector<OptionEntry>& options) {
  std::string rows;
  for (const OptionEntry& option : options) {
    if (option.takesValue()) rows += fmt::format("    '{} {}') ;;\n", command, option.name);
  }
  return rows;
}

}  // namespace

std::string bashCompletion(const CommandTable& table) {
  std::string values = valueRows("", table.options);
  std::string options = optionRow("", table.options);
  std::string taking = takesValue("", table.options);
  for (const CommandEntry& command : table.commands) {
    values += valueRows(command.name, command.options);
    options += optionRow(command.name, command.options);
    taking += takesValue(command.name, command.options);
  }
  taking += "    *) return 1 ;;\n";
  return Functions + function("_raidmonitor_takes_value", "\"$1 $2\"", taking) +
         function("_raidmonitor_value", "\"$1 $2\"", values) +
         function("_raidmonitor_options", "$1", options) +
         function("_raidmonitor_argument", "$1", argumentRows(table)) + (Main + 1);
}

}  // namespace Program
