#pragma once

#include <optional>
#include <string>

#include "application/Command.h"
#include "application/Options.h"
#include "application/check/Expectations.h"

namespace Program {

// Prints one look as metrics, or keeps it in a file.
class MetricsCommand : public Command {
 public:
  const char* name() const override { return "metrics"; }
  const char* summary() const override { return "Print metrics, for Prometheus"; }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  RegistryOptions _registry;
  Expectations _expected;
  std::optional<std::string> _file;
};

}  // namespace Program
