#pragma once

#include <string>

#include "application/Command.h"

namespace Program {

// Prints a script that has a shell complete the program's command line.
class CompletionsCommand : public Command {
 public:
  const char* name() const override { return "completions"; }
  const char* summary() const override { return "Print what a shell needs to complete all this"; }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  const CLI::App* _commandLine = nullptr;  // the whole of it
  std::string _shell;
};

}  // namespace Program
