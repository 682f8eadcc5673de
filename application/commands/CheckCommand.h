#pragma once

#include "application/Command.h"
#include "application/Options.h"
#include "application/check/Expectations.h"

namespace Program {

// One look, as a plugin for Nagios and Icinga: its exit status is a plugin's, and whatever keeps it
// from looking is an answer too, on standard output, with the status UNKNOWN. That includes wrong
// usage, whose exit status elsewhere would read as CRITICAL.
class CheckCommand : public Command {
 public:
  const char* name() const override { return "check"; }
  const char* summary() const override { return "Say how the volumes are, for Nagios or Icinga"; }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;
  ExitStatus refuse(const std::string& reason, StandardOutput& output) const override;

 private:
  ExitStatus look(StandardOutput& output) const;

  RegistryOptions _registry;
  Expectations _expected;
};

}  // namespace Program
