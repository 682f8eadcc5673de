#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "application/Command.h"
#include "application/Options.h"
#include "application/check/Expectations.h"
#include "application/text/TextScreen.h"

namespace Program {

class ExecListener;
class Source;
class WatchListener;
class WatchOutput;

// Tells of every event until the recording ends, or until SIGINT or SIGTERM.
class WatchCommand : public Command {
 public:
  const char* name() const override { return "watch"; }
  const char* summary() const override { return "Print a line for every event"; }
  const char* details() const override;
  void addOptions(CLI::App& parser) override;
  ExitStatus run(StandardOutput& output) override;

 private:
  bool showsStatus(const Source& source, const StandardOutput& output) const;
  std::unique_ptr<WatchListener> listenerFor(Source& source, const Screen& screen,
                                             WatchOutput& lines, bool status) const;
  std::unique_ptr<ExecListener> programFor(WatchListener& shown, WatchOutput& lines) const;
  std::vector<std::string> program() const;
  void checkExpectations() const;
  void checkProgram() const;
  ExitStatus watch(Source& source, StandardOutput& output) const;

  RegistryOptions _registry;
  ScreenOptions _screen;
  Expectations _expected;
  std::optional<std::string> _metrics;
  bool _json = false;
  bool _handles = false;
  std::optional<std::string> _exec;
  std::vector<std::string> _arguments;
  bool _testEvent = false;
};

}  // namespace Program
