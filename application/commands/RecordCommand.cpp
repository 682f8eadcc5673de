#include "application/commands/RecordCommand.h"

#include <CLI/CLI.hpp>
#include <csignal>

#include "application/Signals.h"
#include "application/record/Anonymiser.h"
#include "application/record/Recorder.h"
#include "application/record/RecordingFolder.h"
#include "application/session/QuietRun.h"
#include "platform/pelago/Application.h"

namespace Program {

const char* RecordCommand::details() const {
  return "Writes 0.plist at once, and <milliseconds>.plist whenever a look finds that\n"
         "something has changed. A replay is looked at whenever it changes. Each file is\n"
         "there as a whole or not at all. Play it with --registry DIR.\n"
         "SIGINT and SIGTERM end it in order, with exit status 0.";
}

void RecordCommand::addOptions(CLI::App& parser) {
  parser.add_option("DIR", _folder, "The folder to write into: a new one, or an empty one")
      ->required()
      ->type_name("")
      ->check(reasonAgainstEmptyName);
  addSourceOptions(parser, _registry);
  addMillisecondsOption(parser, "--every", _every, "Look at the live registry so often (2000)");
  parser.add_flag("--anonymise", _anonymise, "Replace serial numbers, names, UUIDs by stand-ins");
  parser.callback([this] {
    if (_every == 0) throw CLI::ValidationError("--every", "0 is no interval");
  });
}

ExitStatus RecordCommand::run(StandardOutput&) {
  // A file that may not grow any more is an error like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  const std::unique_ptr<Source> source = sourceFor(_registry);
  RecordingFolder folder(_folder);
  Anonymiser anonymiser;
  Recorder::Plan plan;
  plan.every = _every.value_or(plan.every);
  plan.until = _registry.until;
  Pelago::Application application(source->clock());
  Recorder recorder(*source, folder, _anonymise ? &anonymiser : nullptr, plan);
  const QuitOnSignals signals;
  recorder.run();
  return Success;
}

}  // namespace Program
