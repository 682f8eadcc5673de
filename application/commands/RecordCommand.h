#pragma once

#include "application/Command.h"
#include "application/Options.h"

namespace Program {

// Writes the registry down as a recording, until a replay ends, or until SIGINT or SIGTERM.
class RecordCommand : public Command {
 public:
  const char* name() const override { return "record"; }
  const char* summary() const override {
    return "Write what happens into a folder, to be replayed";
  }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  RegistryOptions _registry;
  std::string _folder;
  std::optional<Pelago::Milliseconds> _every;
  bool _anonymise = false;
};

}  // namespace Program
