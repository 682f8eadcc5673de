#pragma once

#include "application/Command.h"
#include "application/Options.h"

namespace Program {

// Prints a line for every event until the recording ends, or until SIGINT or SIGTERM.
class WatchCommand : public Command {
 public:
  const char* name() const override { return "watch"; }
  const char* summary() const override { return "Print a line for every event"; }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  RegistryOptions _registry;
  bool _json = false;
  bool _handles = false;
};

}  // namespace Program
