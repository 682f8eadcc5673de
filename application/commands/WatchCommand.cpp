#include "application/commands/WatchCommand.h"

#include <CLI/CLI.hpp>

#include "application/Signals.h"
#include "application/StandardOutput.h"
#include "application/json/JsonWatchPrinter.h"
#include "application/session/QuietRun.h"
#include "application/session/Session.h"
#include "application/session/SessionObservers.h"
#include "application/text/TextWatchPrinter.h"
#include "application/watch/WatchObserver.h"

namespace Program {
namespace {

std::unique_ptr<WatchPrinter> printerFor(bool json, const StandardOutput& output) {
  if (json) return std::make_unique<JsonWatchPrinter>();
  return std::make_unique<TextWatchPrinter>(screenOf(output));
}

}  // namespace

const char* WatchCommand::details() const {
  return "For people a line shows the time, what happened (new, now, gone), the volume,\n"
         "its level and state, the bays of its disks and the enclosure. A disk that is\n"
         "not online has its state behind its bay; ? is a bay that is not known. A volume\n"
         "that changes its state is reported twice.\n"
         "SIGINT and SIGTERM end it in order, with exit status 0.";
}

void WatchCommand::addOptions(CLI::App& parser) {
  addRegistryOptions(parser, _registry, "Show the library's log among the events");
  addPaceOption(parser, _registry);
  parser.add_flag("--json", _json, "JSON for programs");
  parser.add_flag("--handles", _handles, "In the end, show what is still held of the registry");
}

ExitStatus WatchCommand::run(StandardOutput& output) {
  const std::unique_ptr<Source> source = sourceFor(_registry);
  if (_handles && !source->accounts()) {
    throw SourceError("--handles: this registry keeps no accounts");
  }
  const std::unique_ptr<WatchPrinter> printer = printerFor(_json, output);
  WatchObserver watcher(*printer, output, _registry.log);
  SessionObservers observers;
  observers.add(watcher);
  Session session(*source, observers, _registry.until ? _registry.until : source->end());
  {
    const QuitOnSignals signals;
    session.run();
  }
  // Nothing has been torn down yet.
  if (_handles) output.writeLine(printer->handles(session.lastDue(), *source->accounts()));
  return Success;
}

}  // namespace Program
