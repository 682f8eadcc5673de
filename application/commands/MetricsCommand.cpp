#include "application/commands/MetricsCommand.h"

#include <CLI/CLI.hpp>

#include "application/StandardOutput.h"
#include "application/check/Silence.h"
#include "application/files/AtomicFile.h"
#include "application/metrics/MetricsObserver.h"
#include "application/session/QuietRun.h"

namespace Program {

const char* MetricsCommand::details() const {
  return "In the text format of Prometheus, of the state that the same watch ends with; on\n"
         "the live registry of the state after two seconds. The time of the look is the\n"
         "computer's own, also when a recording is looked at. Events and changes are\n"
         "those of this look: 'watch --metrics FILE' counts on.\n"
         "FILE appears whole or not at all and is readable by everybody, as the textfile\n"
         "collector of the node exporter wants it. What it was stays when a look fails.";
}

void MetricsCommand::addOptions(CLI::App& parser) {
  addRegistryOptions(parser, _registry, LogOnStandardError);
  addExpectationOptions(parser, _expected);
  parser.add_option("--output", _file, "Write a file instead of standard output")
      ->type_name("FILE")
      ->check(reasonAgainstEmptyName);
}

ExitStatus MetricsCommand::run(StandardOutput& output) {
  std::optional<Silence> silence;  // or cron sends mail every time
  if (!_registry.log) silence.emplace(Silence::Streams::Output);
  MetricsObserver observer(_expected);
  const QuietRun run(_registry, &observer);
  const std::string text = metricsText(observer.metricsOf(run.session(), run.sourceKind()));
  if (_file) {
    AtomicFile::replace(*_file, text, AtomicFile::Readers::Everybody);
  } else {
    output.write(text);
  }
  return Success;
}

}  // namespace Program
