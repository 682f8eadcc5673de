#include "tests/faults/LifeJudge.h"

#include <algorithm>

#include "tests/faults/Restoration.h"
#include "tests/support/FailingMemory.h"

namespace FaultTest {
namespace {

using TestSupport::PlentyOfMemory;

constexpr Pelago::Milliseconds Period = 2000;

KeptReferences held() {
  KeptReferences held;
  for (const auto& entry : MemoryRegistry::accounts().entries)
    held[entry.id] += entry.references;
  return held;
}

std::string account(std::uint64_t id, std::uint64_t expected, std::uint64_t found) {
  return "kept on entry " + std::to_string(id) + ": " + std::to_string(found) + " instead of " +
         std::to_string(expected);
}

bool isSame(const std::vector<TraceEvent>& a, const std::vector<TraceEvent>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), isSameStep);
}

// A refresh that asks of the registry what the clean one does, is answered alike and leaves the
// same behind has nothing of the fault left in it; the next one need not be looked at.
Ending letSettle(Life& life, const Ending* clean) {
  Ending ending;
  life.pass(Period);
  ending.first = life.view();
  if (clean != nullptr && ending.first == clean->first && isSame(life.trace(), clean->steps)) {
    const PlentyOfMemory plenty;
    ending.second = clean->second;
    return ending;
  }
  {
    const PlentyOfMemory plenty;
    ending.steps = life.trace();
  }
  life.pass(Period);
  ending.second = life.view();
  return ending;
}

}  // namespace

LifeJudge::LifeJudge(const std::set<std::string>& unreadable) : _unreadable(unreadable) {
  MemoryRegistry::reset();
  _allocations = TestSupport::liveAllocations();
}

Ending LifeJudge::judge(Life& life, const Ending* clean) {
  Ending ending = letSettle(life, clean);
  const PlentyOfMemory plenty;
  if (clean != nullptr) {
    complainAll("(1) ", differences(clean->first, ending.first, _unreadable, true));
    complainAll("(2) ", differences(clean->second, ending.second, _unreadable, false));
  }
  complainAll("", unreported(life.view()));
  complainAll("", life.client().complaints());
  life.end();
  const auto accounts = MemoryRegistry::accounts();
  if (accounts.iterators != 0) complain("iterators are left");
  if (accounts.values != 0) complain("values are left");
  settle(life.kept(), held());
  return ending;
}

void LifeJudge::judgeMemory() {
  MemoryRegistry::reset();
  const std::size_t after = TestSupport::liveAllocations();
  if (after == _allocations) return;
  complain(std::to_string(after) + " allocations are alive instead of " +
           std::to_string(_allocations));
}

void LifeJudge::settle(Kept expected, const KeptReferences& found) {
  for (const auto& [id, references] : found) {
    const std::uint64_t least = expected.references[id];
    if (references < least || references > least + expected.unsure[id])
      complain(account(id, least, references));
  }
  for (const auto& [id, references] : expected.references) {
    if (references != 0 && found.count(id) == 0) complain(account(id, references, 0));
  }
}

void LifeJudge::complainAll(const char* before, const std::vector<std::string>& texts) {
  for (const auto& text : texts)
    complain(before + text);
}

void LifeJudge::complain(const std::string& text) {
  const PlentyOfMemory plenty;
  _complaints.push_back(text);
}

}  // namespace FaultTest
