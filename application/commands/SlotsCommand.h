#pragma once

#include "application/Command.h"
#include "application/Options.h"
#include "application/text/TextScreen.h"

namespace Program {

// Prints the bays of each enclosure at the end of a run, and who sits in them.
class SlotsCommand : public Command {
 public:
  const char* name() const override { return "slots"; }
  const char* summary() const override {
    return "Print each enclosure's bays and who sits in them";
  }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  RegistryOptions _registry;
  ScreenOptions _screen;
  bool _json = false;
};

}  // namespace Program
