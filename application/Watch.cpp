#include "application/Commands.h"
#include "application/JsonWatchPrinter.h"
#include "application/QuietRun.h"
#include "application/Session.h"
#include "application/Signals.h"
#include "application/StandardOutput.h"
#include "application/TextWatchPrinter.h"
#include "application/WatchObserver.h"

namespace Program {
namespace {

std::unique_ptr<WatchPrinter> printerFor(const Options& options, const StandardOutput& output) {
  if (options.json) return std::make_unique<JsonWatchPrinter>();
  return std::make_unique<TextWatchPrinter>(screenOf(output));
}

}  // namespace

void runWatch(const Options& options, StandardOutput& output) {
  const std::unique_ptr<Source> source = sourceFor(options);
  if (options.handles && !source->accounts()) {
    throw SourceError("--handles: this registry keeps no accounts");
  }
  const std::unique_ptr<WatchPrinter> printer = printerFor(options, output);
  WatchObserver observer(*printer, output, options.log);
  Session session(*source, observer, options.until ? options.until : source->end());
  {
    const QuitOnSignals signals;
    session.run();
  }
  // Nothing has been torn down yet.
  if (options.handles) output.writeLine(printer->handles(session.lastDue(), *source->accounts()));
}

}  // namespace Program
