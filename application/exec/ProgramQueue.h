#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "application/exec/ProgramProcess.h"

namespace Program {

// Runs a program for one call after the other, on a thread of its own that knows of nothing else.
//
// Thread:  one thread uses it. `finished` is called on the queue's own.
// Failure: making one throws std::system_error when there is no thread to be had.
class ProgramQueue {
 public:
  using Finished = std::function<void(const ProgramCall& call, const Outcome& outcome)>;

  ProgramQueue(std::vector<std::string> command, const ProgramLimits& limits, Finished finished);
  // Gives up what has not been done.
  ~ProgramQueue();
  ProgramQueue(const ProgramQueue&) = delete;
  ProgramQueue& operator=(const ProgramQueue&) = delete;

  // How many calls may be added before the queue is full.
  std::size_t room() const;

  // Into a full queue too: who adds asks for room first.
  void add(ProgramCall call);

  // Waits until everything is done. True is the answer, unless `givenUp`, which is asked several
  // times a second, ends it: then the program that is running is ended, and nothing else is run.
  bool drain(const std::function<bool()>& givenUp);

  // Calls that nothing has been run for.
  std::size_t waiting() const;

 private:
  void work();
  void giveUp();
  bool isGivenUp() const;

  const std::vector<std::string> _command;
  const ProgramLimits _limits;
  const Finished _finished;

  mutable std::mutex _mutex;  // guards what follows, up to the thread
  std::condition_variable _changed;
  std::deque<ProgramCall> _calls;
  bool _running = false;
  bool _givenUp = false;

  std::thread _thread;
};

}  // namespace Program
