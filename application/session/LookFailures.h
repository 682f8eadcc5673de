#pragma once

#include <string>
#include <vector>

#include "application/session/SessionObserver.h"
#include "platform/pelago/Clock.h"

namespace Program {

class Session;

// What kept the last look at the registry from being a whole one: a search that could not be made,
// or a volume that was met before and not this time. Whoever says that all is well has to ask here
// first.
//
// A look is what happens from one refresh to the next, so a failure that the next refresh does not
// meet again is forgotten.
class LookFailures : public SessionObserver {
 public:
  void lookFailed() override;
  void logged(Pelago::Logger::Level level, const std::string& category,
              const std::string& text) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;

  // Each as a sentence without its end. An enclosure that is still coming up has no bridge to find,
  // and says so itself.
  std::vector<std::string> ofLastLook(const Session& session) const;

 private:
  enum class Cause { Registry, Bridge };
  struct Failure {
    Cause cause;
    std::string reason;
  };

  void add(Cause cause, const std::string& reason);

  Pelago::Milliseconds _look = 0;  // counted in refreshes
  std::vector<Failure> _failures;
};

}  // namespace Program
