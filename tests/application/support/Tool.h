#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "tests/application/support/Program.h"

namespace ProgramTest {

// Programs of other people, which the tests hold ours against: the path and the arguments.
using ToolCommand = std::vector<std::string>;

// Runs it to its end, with `input` on its standard input.
Result runTool(const ToolCommand& command, const std::string& input = "");

// One that runs as long as this object lives; both its outputs go to the file `log`.
class RunningTool {
 public:
  RunningTool(const ToolCommand& command, const std::string& log);
  ~RunningTool();
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

  bool hasEnded();

 private:
  pid_t _process = -1;
};

// Asks again and again until the answer is true, at most for so long. What the answer was.
bool waitUntil(const std::function<bool()>& isSo, std::chrono::seconds deadline);

// On the loopback, free at this moment.
int freePort();

}  // namespace ProgramTest
