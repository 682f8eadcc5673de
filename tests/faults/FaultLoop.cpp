#include "tests/faults/FaultLoop.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "tests/faults/KeptModel.h"
#include "tests/faults/Restoration.h"
#include "tests/support/FailingMemory.h"

namespace FaultTest {
namespace {

using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::OperationCount;
using MemoryRegistry::Repeat;
using TestSupport::FailingAllocation;
using TestSupport::PlentyOfMemory;

constexpr Pelago::Milliseconds Period = 2000;
constexpr std::size_t MostComplaints = 12;

// Those that return both a result and a handle.
constexpr Operation WithHandles[] = {
    Operation::IORegistryEntryGetParentEntry, Operation::IORegistryEntryGetChildEntry,
    Operation::IORegistryEntryCreateIterator, Operation::IORegistryEntryGetChildIterator};

std::uint64_t failableCalls() {
  std::uint64_t calls = 0;
  for (std::size_t number = 0; number < OperationCount; ++number) {
    const auto operation = static_cast<Operation>(number);
    if (canFail(operation)) calls += MemoryRegistry::calls(operation);
  }
  return calls;
}

KeptReferences held() {
  KeptReferences held;
  for (const auto& entry : MemoryRegistry::accounts().entries)
    held[entry.id] += entry.references;
  return held;
}

std::string account(const char* what, std::uint64_t id, std::uint64_t expected,
                    std::uint64_t found) {
  return what + (" on entry " + std::to_string(id)) + ": " + std::to_string(found) +
         " instead of " + std::to_string(expected);
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

// A life costs as much as its operations: at most some seconds' worth of them for each scenario, so
// that all tests stay within the time that somebody waits for them.
unsigned strideFor(std::uint64_t operations, std::uint64_t faults) {
  if (const char* stride = std::getenv("FAULT_STRIDE")) {
    return std::max(1U, static_cast<unsigned>(std::strtoul(stride, nullptr, 10)));
  }
  constexpr std::uint64_t affordable = isSanitized ? 800'000 : 40'000'000;
  return static_cast<unsigned>(1 + operations * faults / affordable);
}

class Loop {
 public:
  Loop(const Scenario& scenario, Share share) : _scenario(scenario), _share(share) {}

  Tally registryFaults() {
    playClean();
    _tally.stride = strideFor(_tally.operations, 2 * _tally.operations);
    forEachOf(_tally.operations, 0, "operation, once",
              [](std::uint64_t n) { MemoryRegistry::failAnyCall(n, Repeat::Once); });
    // With a stride those in between, so that of two operations each fails in one way at least.
    forEachOf(_tally.operations, _tally.stride / 2, "operation, for good",
              [](std::uint64_t n) { MemoryRegistry::failAnyCall(n, Repeat::FromThenOn); });
    for (const Operation operation : WithHandles) {
      forEachOf(_calls[static_cast<std::size_t>(operation)], 0, "null", [&](std::uint64_t n) {
        MemoryRegistry::failCall(operation, n, Repeat::Once, Failure::NullSuccess);
      });
    }
    return _tally;
  }

  Tally allocationFailures() {
    playClean();
    _tally.stride = strideFor(_tally.operations, _allocations);
    forEachOf(_allocations, 0, "allocation", [&](std::uint64_t n) { _failing.emplace(n - 1); });
    _tally.operations = _allocations;
    return _tally;
  }

 private:
  // Those of this share.
  template <class Arm>
  void forEachOf(std::uint64_t count, unsigned offset, const char* what, const Arm& arm) {
    const std::uint64_t first = 1 + offset + std::uint64_t{_share.number} * _tally.stride;
    const std::uint64_t step = std::uint64_t{_share.of} * _tally.stride;
    for (std::uint64_t n = first; n <= count; n += step)
      tryOne(what + (" " + std::to_string(n)), [&] { arm(n); });
  }

  // Twice: what is asked for but once, by whoever, is there afterwards.
  void playClean() {
    for (const bool isFirst : {true, false}) {
      _warmUp = isFirst;
      const Balance balance(*this, "clean");
      Life life;
      const std::uint64_t before = TestSupport::madeAllocations();
      _scenario.play(life);
      _allocations = TestSupport::madeAllocations() - before;
      _tally.operations = failableCalls();
      for (std::size_t number = 0; number < OperationCount; ++number)
        _calls[number] = MemoryRegistry::calls(static_cast<Operation>(number));
      _ending = letSettle(life);
      check(life, "clean");
    }
  }

  void tryOne(const std::string& fault, const std::function<void()>& arm) {
    const Balance balance(*this, fault);
    Life life;
    arm();
    _scenario.play(life);
    MemoryRegistry::failNothing();
    ++_tally.faults;
    const bool failed = _failing && _failing->failed();
    _failing.reset();
    if (failed && life.exceptions() != 1) complain(fault, "no exception");
    const Ending ending = letSettle(life);
    complainAll(fault, " (1) ",
                differences(_ending.first, ending.first, _scenario.unreadable, true));
    complainAll(fault, " (2) ",
                differences(_ending.second, ending.second, _scenario.unreadable, false));
    check(life, fault);
  }

  // What a life has asked for is given back when it has ended.
  class Balance {
   public:
    Balance(Loop& loop, std::string life) : _loop(loop), _life(std::move(life)) {
      MemoryRegistry::reset();
      _before = TestSupport::liveAllocations();
    }
    ~Balance() {
      MemoryRegistry::reset();
      const std::size_t after = TestSupport::liveAllocations();
      if (after == _before || _loop._warmUp) return;
      _loop.complain(_life, std::to_string(after) + " allocations are alive instead of " +
                                std::to_string(_before));
    }
    Balance(const Balance&) = delete;
    Balance& operator=(const Balance&) = delete;

   private:
    Loop& _loop;
    std::string _life;
    std::size_t _before = 0;
  };

  Ending letSettle(Life& life) {
    Ending ending;
    life.pass(Period);
    ending.first = life.view();
    life.pass(Period);
    ending.second = life.view();
    return ending;
  }

  // What holds at the end of every life.
  void check(Life& life, const std::string& fault) {
    complainAll(fault, " ", unreported(life.view()));
    complainAll(fault, " ", life.client().complaints());
    life.end();
    const auto accounts = MemoryRegistry::accounts();
    if (accounts.iterators != 0) complain(fault, "iterators are left");
    if (accounts.values != 0) complain(fault, "values are left");
    settle(fault, keptReferences(life.trace()), held());
  }

  void settle(const std::string& fault, Kept expected, const KeptReferences& found) {
    for (const auto& [id, references] : found) {
      const std::uint64_t least = expected.references[id];
      if (references < least || references > least + expected.unsure[id]) {
        complain(fault, account("kept", id, least, references));
      }
    }
    for (const auto& [id, references] : expected.references) {
      if (references != 0 && found.count(id) == 0) {
        complain(fault, account("kept", id, references, 0));
      }
    }
  }

  void complainAll(const std::string& fault, const char* between,
                   const std::vector<std::string>& texts) {
    for (const auto& text : texts)
      complain(fault, between + text);
  }
  void complain(const std::string& fault, const std::string& text) {
    const PlentyOfMemory plenty;
    if (_tally.complaints.size() < MostComplaints) {
      _tally.complaints.push_back(_scenario.name + ", " + fault + ": " + text);
    }
  }

  const Scenario& _scenario;
  Share _share;
  std::optional<FailingAllocation> _failing;
  std::uint64_t _allocations = 0;
  std::uint64_t _calls[OperationCount] = {};
  Ending _ending;
  bool _warmUp = false;
  Tally _tally;
};

}  // namespace

Tally tryRegistryFaults(const Scenario& scenario, Share share) {
  const NoOutput silence;
  return Loop(scenario, share).registryFaults();
}

Tally tryAllocationFailures(const Scenario& scenario, Share share) {
  const NoOutput silence;
  return Loop(scenario, share).allocationFailures();
}

}  // namespace FaultTest
