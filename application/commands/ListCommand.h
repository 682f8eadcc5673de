#pragma once

#include "application/Command.h"
#include "application/Options.h"
#include "application/text/TextScreen.h"

namespace Program {

// Prints the volumes of each enclosure at the end of a run.
class ListCommand : public Command {
 public:
  const char* name() const override { return "list"; }
  const char* summary() const override { return "Print the volumes of each enclosure"; }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  RegistryOptions _registry;
  ScreenOptions _screen;
  bool _json = false;
};

}  // namespace Program
