#pragma once

#include "application/Command.h"
#include "application/Options.h"

namespace Program {

// Writes a page that shows a run: the bays at any moment, the states over time, events and log.
class ReportCommand : public Command {
 public:
  const char* name() const override { return "report"; }
  const char* summary() const override {
    return "Write a page that shows what happened, for a browser";
  }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  RegistryOptions _registry;
  std::string _file;
};

}  // namespace Program
