#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "application/session/SessionObserver.h"

namespace Program {

class MetricsObserver;

// Keeps a file of metrics up to date while a session runs, for a textfile collector: after a moment
// is over, and not more often than a refresh of the live registry comes, however fast a replay is.
//
// Ownership: the observer that it asks is the caller's, is added to the session before it, and
//            outlives it.
// Failure:   a file that can't be written at all, when it is made, throws FileError. Later on, the
//            watch goes on: a cause is told once on standard error, and so is that it has ended.
class MetricsFile : public SessionObserver {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  MetricsFile(std::string path, std::string source, MetricsObserver& metrics,
              Clock clock = std::chrono::steady_clock::now);

  void instantEnded(const Session& session) override;

  // Brings the file up to date. False when that can't be.
  bool write(const Session& session);

 private:
  void report(const std::string& failure);

  std::string _path;
  std::string _source;
  MetricsObserver& _metrics;
  Clock _clock;
  std::chrono::steady_clock::time_point _next;  // the earliest moment to write at
  std::string _failure;                         // the one that was told last; empty: all is well
};

}  // namespace Program
