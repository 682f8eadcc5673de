#pragma once

#include <memory>
#include <vector>

#include "application/Options.h"
#include "application/session/Session.h"
#include "application/session/SessionObserver.h"
#include "application/session/SessionObservers.h"
#include "application/session/Source.h"

namespace Program {

// The source that the command line names.
std::unique_ptr<Source> sourceFor(const RegistryOptions& options);

// Which of them it is: "live", "archive" (a recording too) or "demonstration".
const char* kindOf(const RegistryOptions& options, const Source& source);

// A run of which only the state at its end is wanted. On a registry whose watch never ends it lasts
// until the first refresh. An observer that wants to hear it outlives it.
class QuietRun {
 public:
  explicit QuietRun(const RegistryOptions& options, SessionObserver* observer = nullptr);

  const Session& session() const { return _session; }
  const char* sourceKind() const { return _sourceKind; }
  std::vector<RAIDMonitoring::RAIDHost*> hosts() const { return _session.hosts(); }

 private:
  // Log lines, if they are wanted, go to standard error: the output is one answer.
  class Observer : public SessionObserver {
   public:
    explicit Observer(bool log) : _log(log) {}
    void logged(Pelago::Logger::Level level, const std::string& category,
                const std::string& text) override;

   private:
    bool _log;
  };

  std::unique_ptr<Source> _source;
  const char* _sourceKind;
  Observer _observer;
  SessionObservers _observers;
  Session _session;
};

// For the help of a command that shows the state at the end of such a run.
constexpr const char* EndStateDetails =
    "Shows the state that the same watch ends with; on the live registry the state\n"
    "after two seconds.";

}  // namespace Program
