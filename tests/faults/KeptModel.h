#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "tests/faults/SeamTrace.h"

namespace FaultTest {

using KeptReferences = std::map<std::uint64_t, std::uint64_t>;  // by entry ID

struct Kept {
  KeptReferences references;
  // Where memory ran out before it showed which operation was at work: one more may be kept.
  KeptReferences unsure;
};

// The references that a life is expected to leave behind, worked out from what happened at the seam
// in one call into the library, or in several: what was looked up, which operation did it (as its
// next steps and its log lines tell), and what came of it. Knows nothing of what was released.
// docs/architecture.md, "Kept on purpose", is the rule.
Kept keptReferences(const std::vector<TraceEvent>& events);

}  // namespace FaultTest
