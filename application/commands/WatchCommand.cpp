#include "application/commands/WatchCommand.h"

#include <CLI/CLI.hpp>
#include <optional>

#include "application/Signals.h"
#include "application/StandardOutput.h"
#include "application/exec/ExecListener.h"
#include "application/exec/TestEvents.h"
#include "application/metrics/MetricsFile.h"
#include "application/metrics/MetricsObserver.h"
#include "application/session/QuietRun.h"
#include "application/session/Session.h"
#include "application/session/SessionObservers.h"
#include "application/text/TextWatch.h"
#include "application/watch/JsonWatch.h"
#include "application/watch/WatchObserver.h"
#include "application/watch/WatchOutput.h"

namespace Program {

const char* WatchCommand::details() const {
  return "For people a line shows the time, what happened (new, now, gone), the volume,\n"
         "its level and state, its disks by bay, those that changed first, and the\n"
         "enclosure. 'bay 3, was' is where a disk that cannot be seen was last. An\n"
         "enclosure that is unplugged is one line with its volumes.\n"
         "\n"
         "The program of --exec gets the event's JSON object on its standard input, and\n"
         "the essentials in environment variables: RAIDMONITOR_EVENT, _TIME, _DEVICE,\n"
         "_ENCLOSURE, _VOLUME_NAME, _VOLUME_UUID, _LEVEL, _STATE, _BAYS, _MEMBERS. It is\n"
         "run for one event at a time and has 10 seconds; then it gets SIGTERM, and 2\n"
         "seconds later SIGKILL. 100 events wait for it at most; those beyond are dropped\n"
         "and counted in an event 'dropped' (RAIDMONITOR_COUNT). No shell is involved.\n"
         "With --test-event the exit status is 0 if it took them all, and 1 if not.\n"
         "\n"
         "SIGINT and SIGTERM end the watch in order, with exit status 0; while it then\n"
         "waits for the program, a second one ends that too.";
}

void WatchCommand::addOptions(CLI::App& parser) {
  addRegistryOptions(parser, _registry, "Show the library's log among the events");
  addPaceOption(parser, _registry);
  parser.add_flag("--json", _json, "JSON for programs");
  addScreenOptions(parser, _screen);
  parser.add_option("--metrics", _metrics, "Keep a file of metrics up to date, for Prometheus")
      ->type_name("FILE")
      ->check(reasonAgainstEmptyName);
  addExpectationOptions(parser, _expected);
  parser.add_flag("--handles", _handles, "In the end, show what is still held of the registry");
  parser.add_option("--exec", _exec, "Run a program for each event")->type_name("PROGRAM");
  parser.add_option("--exec-arg", _arguments, "An argument for it; may be repeated")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  parser.add_flag("--test-event", _testEvent, "Only send it one event of each kind");
  parser.callback([this] {
    checkExpectations();
    checkProgram();
  });
}

void WatchCommand::checkExpectations() const {
  const bool expects = !_expected.uuids.empty() || _expected.volumes;
  if (expects && !_metrics) throw CLI::ValidationError("--expect", "needs --metrics");
}

void WatchCommand::checkProgram() const {
  if (_exec && _exec->empty()) throw CLI::ValidationError("--exec", "names no program");
  if (_exec) return;
  if (_testEvent) throw CLI::ValidationError("--test-event", "needs --exec");
  if (!_arguments.empty()) throw CLI::ValidationError("--exec-arg", "needs --exec");
}

std::vector<std::string> WatchCommand::program() const {
  std::vector<std::string> command = {*_exec};
  command.insert(command.end(), _arguments.begin(), _arguments.end());
  return command;
}

// Where time is not real nobody could read it.
bool WatchCommand::showsStatus(const Source& source, const StandardOutput& output) const {
  return !_json && output.isTerminal() && (source.isLive() || _registry.pace);
}

std::unique_ptr<WatchListener> WatchCommand::listenerFor(Source& source, const Screen& screen,
                                                         WatchOutput& lines, bool status) const {
  if (_json) return std::make_unique<JsonWatch>(lines);
  const TextClock clock = source.isLive() ? TextClock::onTheWall(source.clock()) : TextClock();
  return std::make_unique<TextWatch>(screen, clock, lines,
                                     status ? TextWatch::Status::Shown : TextWatch::Status::None);
}

std::unique_ptr<ExecListener> WatchCommand::programFor(WatchListener& shown,
                                                       WatchOutput& lines) const {
  if (!_exec) return nullptr;
  return std::make_unique<ExecListener>(
      program(), ProgramLimits(), shown,
      [&lines](const std::string& text) { lines.complain(text); });
}

ExitStatus WatchCommand::run(StandardOutput& output) {
  // Otherwise the process would end, and leave a program behind that nobody ends in time.
  std::optional<BrokenPipesReported> brokenPipes;
  if (_exec) brokenPipes.emplace();
  if (_testEvent) return sendTestEvents(program(), ProgramLimits(), output) ? Success : Failure;
  const std::unique_ptr<Source> source = sourceFor(_registry);
  if (_handles && !source->accounts()) {
    throw SourceError("--handles: this registry keeps no accounts");
  }
  return watch(*source, output);
}

ExitStatus WatchCommand::watch(Source& source, StandardOutput& output) const {
  WatchOutput lines(output);
  const bool status = showsStatus(source, output);
  const auto shown = listenerFor(source, screenOf(output, _screen), lines, status);
  const auto program = programFor(*shown, lines);
  WatchObserver watcher(_registry.log);
  if (program) watcher.add(*program);
  watcher.add(*shown);
  MetricsObserver counts(_expected);
  std::optional<MetricsFile> metrics;
  if (_metrics) metrics.emplace(*_metrics, kindOf(_registry, source), counts);
  SessionObservers observers;
  observers.add(watcher);
  if (metrics) observers.add(counts);
  if (metrics) observers.add(*metrics);
  Session session(source, observers, _registry.until ? _registry.until : source.end());
  const QuitOnSignals signals;
  {
    std::optional<WakeOnResize> resizes;
    if (status) resizes.emplace(source.clock());
    session.run();
  }
  if (program) program->endEvents();
  const bool written = !metrics || metrics->write(session);
  // Nothing has been torn down yet.
  if (_handles) watcher.tell({session.lastDue(), HandlesEvent{*source.accounts()}});
  watcher.instantEnded(session);
  lines.removeStatus();
  if (program) program->drain([] { return Pelago::Application::instance()->quitting(); });
  return written ? Success : Failure;
}

}  // namespace Program
