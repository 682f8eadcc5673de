#include "application/exec/ProgramQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using Program::Outcome;
using Program::ProgramQueue;
using testing::ElementsAre;

const std::vector<std::string> path = {"PATH=" + std::string(getenv("PATH"))};

bool never() { return false; }
bool atOnce() { return true; }

// The events, in the order in which the program was done with them.
class Record {
 public:
  ProgramQueue::Finished callback() {
    return [this](const Program::ProgramCall& call, const Outcome& outcome) {
      const std::lock_guard<std::mutex> lock(_mutex);
      _done.push_back(call.event);
      _kinds.push_back(outcome.kind);
    };
  }
  std::vector<std::string> done() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _done;
  }
  std::vector<Outcome::Kind> kinds() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _kinds;
  }

 private:
  mutable std::mutex _mutex;
  std::vector<std::string> _done;
  std::vector<Outcome::Kind> _kinds;
};

TEST(ProgramQueue, RunsTheProgramForOneCallAfterTheOther) {
  Record record;
  ProgramQueue queue({"true"}, {}, record.callback());
  for (const char* event : {"a", "b", "c"})
    queue.add({event, "", path});
  EXPECT_TRUE(queue.drain(never));
  EXPECT_THAT(record.done(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(0U, queue.waiting());
}

TEST(ProgramQueue, WithoutCallsIsDoneAtOnce) {
  ProgramQueue queue({"true"}, {}, {});
  EXPECT_TRUE(queue.drain(never));
}

// The first one waits until somebody opens the pipe.
TEST(ProgramQueue, IsFullWhenSoManyWait) {
  const TemporaryFolder folder;
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  Record record;
  Program::ProgramLimits limits;
  limits.queue = 2;
  limits.time = std::chrono::minutes(1);
  ProgramQueue queue({"sh", "-c", "read line < \"$0\"", pipe}, limits, record.callback());
  EXPECT_EQ(2U, queue.room());
  queue.add({"a", "", path});
  std::ofstream opened(pipe);  // when it has been taken from the queue, and runs
  EXPECT_EQ(2U, queue.room());
  queue.add({"b", "", path});
  queue.add({"c", "", path});
  EXPECT_EQ(0U, queue.room());
  queue.add({"d", "", path});
  EXPECT_EQ(0U, queue.room()) << "beyond what it holds";
  EXPECT_FALSE(queue.drain(atOnce));
}

TEST(ProgramQueue, WhatIsGivenUpIsNotRunAndWhatRunsIsEnded) {
  const TemporaryFolder folder;
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  Record record;
  Program::ProgramLimits limits;
  limits.time = std::chrono::minutes(1);
  {
    ProgramQueue queue({"sh", "-c", "read line < \"$0\"; exec sleep 600", pipe}, limits,
                       record.callback());
    queue.add({"a", "", path});
    queue.add({"b", "", path});
    std::ofstream(pipe) << "go\n";
    EXPECT_FALSE(queue.drain(atOnce));
    EXPECT_EQ(1U, queue.waiting());
  }
  EXPECT_THAT(record.done(), ElementsAre("a"));
  EXPECT_THAT(record.kinds(), ElementsAre(Outcome::Kind::GivenUp));
}

}  // namespace
}  // namespace ProgramTest
