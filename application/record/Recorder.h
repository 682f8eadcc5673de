#pragma once

#include <optional>

#include "application/record/RegistryLook.h"
#include "application/session/Source.h"

namespace Program {

class Anonymiser;
class Progress;
class RecordingFolder;

// Looks at a registry again and again, and writes down what it finds changed.
//
// A registry that waits is looked at in regular intervals. A replay is looked at whenever its
// content changes, so that the recording of a replay has the same times; what the last change left
// is written in any case, so that both end at the same time.
//
// Ownership: everything is the caller's, and outlives the recorder.
// Thread:    the caller's, which is the event thread.
// Failure:   SourceError when the registry can't be read at all, FileError when the folder
//            can't be written. A later look that fails is left out, with a line on standard error.
class Recorder {
 public:
  struct Plan {
    Pelago::Milliseconds every = 2000;
    std::optional<Pelago::Milliseconds> until;  // none: to the end, if there is one
  };

  // `anonymiser` may be null.
  Recorder(Source& source, RecordingFolder& folder, Anonymiser* anonymiser, const Plan& plan);

  // Returns at the end, or after Application::quit().
  void run();

 private:
  void lookOn(Progress* progress);
  std::optional<Pelago::Milliseconds> nextMoment() const;
  void look(Pelago::Milliseconds moment);
  void write(Pelago::Milliseconds moment, const RegistryLook& look);

  Source& _source;
  RecordingFolder& _folder;
  Anonymiser* _anonymiser;
  Plan _plan;
  Pelago::Milliseconds _lastLook = -1;  // none yet
  Pelago::Milliseconds _lastWritten = -1;
  RegistryLook _known;
};

}  // namespace Program
