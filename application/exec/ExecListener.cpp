#include "application/exec/ExecListener.h"

#include <fmt/format.h>

#include <utility>

#include "application/exec/EventEnvironment.h"
#include "application/json/JsonEvent.h"
#include "application/text/TextCharacters.h"

namespace Program {
namespace {

bool isForProgram(const WatchEvent& event) {
  return std::holds_alternative<DeviceEvent>(event.what) ||
         std::holds_alternative<VolumeEvent>(event.what);
}

ProgramCall callFor(const WatchEvent& event) {
  return {nameOf(event), jsonOf(event) + "\n", environmentFor(event)};
}

}  // namespace

ExecListener::ExecListener(std::vector<std::string> command, const ProgramLimits& limits,
                           WatchListener& others, Complain complain)
    : _program(printable(command.front(), Charset::Unicode)),
      _limits(limits),
      _others(others),
      _complain(std::move(complain)),
      _queue(std::move(command), limits,
             [this](const ProgramCall&, const Outcome& outcome) { finished(outcome); }) {}

// While some wait to be reported, the report and the event after it need two places.
void ExecListener::heard(const WatchEvent& event) {
  if (!isForProgram(event)) return;
  if (_dropped > 0 && _queue.room() >= 2) reportDropped();
  if (_dropped > 0 || _queue.room() == 0) {
    ++_dropped;
    _lastDropped = event.time;
    return;
  }
  _queue.add(callFor(event));
}

void ExecListener::instantEnded(const Overview&) {
  if (_dropped > 0 && _queue.room() > 0) reportDropped();
  complainOfNews();
}

void ExecListener::endEvents() {
  if (_dropped > 0) reportDropped();
}

void ExecListener::reportDropped() {
  const WatchEvent report{_lastDropped, DroppedEvent{std::exchange(_dropped, 0)}};
  _queue.add(callFor(report));
  _others.heard(report);
}

void ExecListener::drain(const std::function<bool()>& givenUp) {
  const bool done = _queue.drain(givenUp);
  complainOfNews();
  if (!done && _queue.waiting() > 0) {
    _complain(fmt::format("{}: {} events were not handed to it", _program, _queue.waiting()));
  }
}

void ExecListener::finished(const Outcome& outcome) {
  if (outcome.taken()) return;
  const std::string failure = _program + ": " + reasonOf(outcome, _limits);
  const std::lock_guard<std::mutex> lock(_mutex);
  if (_failures.insert(failure).second) _news.push_back(failure);
}

void ExecListener::complainOfNews() {
  std::vector<std::string> news;
  {
    const std::lock_guard<std::mutex> lock(_mutex);
    news.swap(_news);
  }
  for (const std::string& failure : news)
    _complain(failure);
}

}  // namespace Program
