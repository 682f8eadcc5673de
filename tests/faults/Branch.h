#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace FaultTest {

// What a branch came to.
struct BranchReport {
  std::vector<std::string> lines;  // what it told
  std::string failure;             // how it ended, if not by endBranch(); else empty
};

// Goes on twice from here: in this process, and in a copy of it, the branch, whose end is awaited.
// Returns nothing in the branch, which has to end with endBranch(), and in the process itself what
// came of it. A branch that tells nothing for so long is ended.
std::optional<BranchReport> branchOff(std::chrono::milliseconds longestSilence);

// For branches. A line break in the line becomes a blank.
void tell(std::string line);
[[noreturn]] void endBranch();

}  // namespace FaultTest
