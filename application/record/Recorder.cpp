#include "application/record/Recorder.h"

#include <algorithm>
#include <utility>

#include "application/StandardError.h"
#include "application/progress/Progress.h"
#include "application/record/Anonymiser.h"
#include "application/record/ArchiveWriter.h"
#include "application/record/RecordingFolder.h"
#include "application/record/RegistryReader.h"
#include "platform/pelago/Application.h"

namespace Program {

using Pelago::Milliseconds;

Recorder::Recorder(Source& source, RecordingFolder& folder, Anonymiser* anonymiser,
                   const Plan& plan)
    : _source(source), _folder(folder), _anonymiser(anonymiser), _plan(plan) {}

void Recorder::run() {
  if (_source.waits()) return lookOn(nullptr);
  Progress progress("Recording", _source.end().value_or(Progress::Unknown));
  lookOn(&progress);
  if (_lastLook > _lastWritten) write(_lastLook, _known);
}

void Recorder::lookOn(Progress* progress) {
  while (const auto moment = nextMoment()) {
    if (_plan.until && *moment > *_plan.until) return;
    if (!Pelago::Application::instance()->runBefore(*moment)) return;
    if (progress != nullptr) progress->reach(*moment);
    look(*moment);
  }
}

std::optional<Milliseconds> Recorder::nextMoment() const {
  if (!_source.waits()) return _source.nextLook();
  if (_lastLook < 0) return 0;
  // Looks that were missed, while the machine slept say, are not made up for.
  return std::max(_lastLook + _plan.every, _source.clock().now());
}

void Recorder::look(Milliseconds moment) {
  _lastLook = moment;
  if (!_source.waits()) _source.prepareLook();
  std::optional<RegistryLook> found = readRegistry();
  const bool isFirst = _lastWritten < 0;
  if (!found && isFirst) throw SourceError("the registry cannot be read");
  if (!found) {
    printError("raidmonitor: the registry could not be read, once");
    return;
  }
  if (!isFirst && sameContent(*found, _known)) return;
  write(moment, *found);
  _known = *std::move(found);
}

void Recorder::write(Milliseconds moment, const RegistryLook& look) {
  if (_anonymiser == nullptr) {
    _folder.write(moment, archiveOf(look));
  } else {
    _folder.write(moment, archiveOf(_anonymiser->disguised(look)));
  }
  _lastWritten = moment;
}

}  // namespace Program
