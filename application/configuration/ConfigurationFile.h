#pragma once

#include <CLI/CLI.hpp>
#include <istream>
#include <vector>

namespace Program {

// Reads the file of --config: TOML, a table for each command, in which options bear their names
// without the dashes. All of its tables are checked, whichever command is going to run; the parser
// takes what the command line does not say itself.
//
// Failure: CLI::ConfigError, with the file and the line, for what is not TOML, for an unknown table
// or
//          key, and for a value of the wrong type.
class ConfigurationFile : public CLI::ConfigBase {
 public:
  // `parser` outlives this object.
  explicit ConfigurationFile(const CLI::App& parser) : _parser(parser) {}

  std::vector<CLI::ConfigItem> from_config(std::istream& input) const override;

 private:
  const CLI::App& _parser;
};

}  // namespace Program
