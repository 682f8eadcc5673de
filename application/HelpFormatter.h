#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace Program {

// The help of a command also shows an option that is the whole program's.
class HelpFormatter : public CLI::Formatter {
 public:
  // `shared` outlives this object.
  explicit HelpFormatter(const CLI::Option& shared) : _shared(shared) {}

  std::string make_group(std::string group, bool positional,
                         std::vector<const CLI::Option*> options) const override;

 private:
  const CLI::Option& _shared;
};

}  // namespace Program
