#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "application/exec/ProgramQueue.h"
#include "application/watch/WatchListener.h"

namespace Program {

// Runs a program for each event of enclosures and volumes: the event's JSON object is its standard
// input, the essentials are in its environment. The watch never waits for it. Events that find the
// queue full are dropped; as soon as there is room again, an event says how many.
//
// Thread: the event thread.
class ExecListener : public WatchListener {
 public:
  using Complain = std::function<void(const std::string&)>;

  // `others` hears of dropped events; `complain` gets a line for each way in which the program
  // fails, the first time that it does.
  ExecListener(std::vector<std::string> command, const ProgramLimits& limits, WatchListener& others,
               Complain complain);

  void heard(const WatchEvent& event) override;
  void instantEnded(const Overview& overview) override;

  // There are no more events: those that have been dropped are reported, room or not.
  void endEvents();

  // Waits for the program, unless `givenUp` says that nobody cares any longer.
  void drain(const std::function<bool()>& givenUp);

 private:
  void finished(const Outcome& outcome);
  void reportDropped();
  void complainOfNews();

  const std::string _program;
  const ProgramLimits _limits;
  WatchListener& _others;
  Complain _complain;
  std::size_t _dropped = 0;
  Pelago::Milliseconds _lastDropped = 0;

  std::mutex _mutex;  // guards the next two
  std::set<std::string> _failures;
  std::vector<std::string> _news;  // failures that nobody has been told of

  ProgramQueue _queue;  // the last: its thread ends first
};

}  // namespace Program
