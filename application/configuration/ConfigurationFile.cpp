#include "application/configuration/ConfigurationFile.h"

#include <fmt/format.h>
#include <toml++/toml.h>

#include <optional>
#include <string>

namespace Program {
namespace {

// One file's place for errors.
class Reading {
 public:
  explicit Reading(std::string file) : _file(std::move(file)) {}

  const std::string& file() const { return _file; }

  [[noreturn]] void fail(const toml::source_region& where, const std::string& reason) const {
    throw CLI::ConfigError(_file + ":" + std::to_string(where.begin.line) + ": " + reason,
                           CLI::ExitCodes::ConfigError);
  }

 private:
  std::string _file;
};

const CLI::App* commandNamed(const CLI::App& parser, std::string_view name) {
  const auto commands = parser.get_subcommands(
      [name](const CLI::App* command) { return command->get_name() == name; });
  return commands.empty() ? nullptr : commands.front();
}

// Help, version and the like are no settings.
const CLI::Option* settingNamed(const CLI::App& command, const std::string& name) {
  const auto isMeant = [&name](const CLI::Option* option) {
    const bool positional = !option->nonpositional();
    return option->get_configurable() &&
           option->get_name(positional) == (positional ? name : "--" + name);
  };
  const auto found = command.get_options(isMeant);
  return found.empty() ? nullptr : found.front();
}

bool isFlag(const CLI::Option& option) { return option.get_items_expected_max() == 0; }

bool isNumber(const CLI::Option& option) {
  const std::string word = option.get_type_name();
  return word == "MS" || word == "N";
}

const char* wantedFor(const CLI::Option& option) {
  if (isFlag(option)) return "true or false";
  if (isNumber(option)) return "a whole number, not below 0";
  return "a string";
}

std::optional<std::string> textOf(const CLI::Option& option, const toml::node& value) {
  if (isFlag(option)) {
    if (const auto* flag = value.as_boolean()) return flag->get() ? "true" : "false";
  } else if (isNumber(option)) {
    const auto* number = value.as_integer();
    if (number != nullptr && number->get() >= 0) return std::to_string(number->get());
  } else if (const auto* text = value.as_string()) {
    return text->get();
  }
  return std::nullopt;
}

// One value, or for an option that may be repeated an array of them.
std::vector<std::string> inputsFor(const Reading& reading, const CLI::Option& option,
                                   const std::string& key, const toml::node& value) {
  const bool repeatable = option.get_items_expected_max() > 1;
  std::vector<std::string> inputs;
  const auto take = [&](const toml::node& node) {
    const std::optional<std::string> text = textOf(option, node);
    if (!text) {
      reading.fail(node.source(), "'" + key + "' has to be " + wantedFor(option) +
                                      (repeatable ? ", or an array of them" : ""));
    }
    inputs.push_back(*text);
  };
  if (const toml::array* values = value.as_array(); values != nullptr && repeatable) {
    for (const toml::node& node : *values)
      take(node);
  } else {
    take(value);
  }
  return inputs;
}

void addItems(const Reading& reading, const CLI::App& command, const toml::table& settings,
              std::vector<CLI::ConfigItem>& items) {
  for (const auto& [name, value] : settings) {
    const std::string key(name.str());
    const CLI::Option* option = settingNamed(command, key);
    if (option == nullptr) {
      reading.fail(name.source(), "'" + key + "' is no option of '" + command.get_name() + "'");
    }
    CLI::ConfigItem item;
    item.parents = {command.get_name()};
    item.name = key;
    item.inputs = inputsFor(reading, *option, key, value);
    if (!item.inputs.empty()) items.push_back(std::move(item));
  }
}

toml::table parsed(const Reading& reading, std::istream& input) {
  try {
    return toml::parse(input, reading.file());
  } catch (const toml::parse_error& error) {
    reading.fail(error.source(), std::string(error.description()));
  }
}

}  // namespace

std::vector<CLI::ConfigItem> ConfigurationFile::from_config(std::istream& input) const {
  const Reading reading(_parser.get_config_ptr()->as<std::string>());
  const toml::table file = parsed(reading, input);
  std::vector<CLI::ConfigItem> read;
  for (const auto& [name, value] : file) {
    const std::string key(name.str());
    const CLI::App* command = commandNamed(_parser, key);
    const toml::table* settings = value.as_table();
    if (command == nullptr) reading.fail(name.source(), fmt::format("'{}' is no command", key));
    if (settings == nullptr) {
      reading.fail(name.source(), fmt::format("'{0}' has to be a table: [{0}]", key));
    }
    addItems(reading, *command, *settings, read);
  }
  return read;
}

}  // namespace Program
