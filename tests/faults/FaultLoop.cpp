#include "tests/faults/FaultLoop.h"

#include <algorithm>
#include <cstdlib>

#include "tests/faults/FailingMemory.h"
#include "tests/faults/KeptModel.h"
#include "tests/faults/Restoration.h"

namespace FaultTest {
namespace {

using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::OperationCount;
using MemoryRegistry::Repeat;

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

// A life costs as much as its operations: some seconds' worth of them for each scenario.
unsigned strideFor(std::uint64_t operations, std::uint64_t faults) {
  if (const char* stride = std::getenv("FAULT_STRIDE")) {
    return std::max(1U, static_cast<unsigned>(std::strtoul(stride, nullptr, 10)));
  }
  constexpr std::uint64_t affordable = isSanitized ? 1'500'000 : 35'000'000;
  return static_cast<unsigned>(1 + operations * faults / affordable);
}

class Loop {
 public:
  explicit Loop(const Scenario& scenario) : _scenario(scenario) {}

  Tally registryFaults() {
    playClean();
    _tally.stride = strideFor(_tally.operations, 2 * _tally.operations);
    for (const Repeat repeat : {Repeat::Once, Repeat::FromThenOn}) {
      for (std::uint64_t n = 1; n <= _tally.operations; n += _tally.stride) {
        tryOne(std::to_string(n) + (repeat == Repeat::Once ? " once" : " and later"),
               [&] { MemoryRegistry::failAnyCall(n, repeat); });
      }
    }
    for (const Operation operation : WithHandles) {
      const std::uint64_t calls = _calls[static_cast<std::size_t>(operation)];
      for (std::uint64_t n = 1; n <= calls; n += _tally.stride) {
        tryOne(std::to_string(n) + " null",
               [&] { MemoryRegistry::failCall(operation, n, Repeat::Once, Failure::NullSuccess); });
      }
    }
    return _tally;
  }

  Tally allocationFailures() {
    playClean();
    _outOfMemory = true;
    _tally.stride = strideFor(_tally.operations, _allocations);
    for (std::uint64_t n = 1; n <= _allocations; n += _tally.stride)
      tryOne("allocation " + std::to_string(n), [&] { FailingMemory::fail(n); });
    _tally.operations = _allocations;
    return _tally;
  }

 private:
  void playClean() {
    Life life;
    const std::uint64_t before = FailingMemory::allocations();
    _scenario.play(life);
    _allocations = FailingMemory::allocations() - before;
    _tally.operations = failableCalls();
    for (std::size_t number = 0; number < OperationCount; ++number)
      _calls[number] = MemoryRegistry::calls(static_cast<Operation>(number));
    _ending = letSettle(life);
    check(life, "clean");
  }

  void tryOne(const std::string& fault, const std::function<void()>& arm) {
    Life life;
    arm();
    _scenario.play(life);
    MemoryRegistry::failNothing();
    const bool failed = FailingMemory::failNothing();
    ++_tally.faults;
    if (_outOfMemory && failed && life.exceptions() != 1) complain(fault, "no exception");
    const Ending ending = letSettle(life);
    complainAll(fault, " (1) ",
                differences(_ending.first, ending.first, _scenario.unreadable, true));
    complainAll(fault, " (2) ",
                differences(_ending.second, ending.second, _scenario.unreadable, false));
    check(life, fault);
  }

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
    if (_tally.complaints.size() < MostComplaints) {
      _tally.complaints.push_back(_scenario.name + ", " + fault + ": " + text);
    }
  }

  const Scenario& _scenario;
  bool _outOfMemory = false;
  std::uint64_t _allocations = 0;
  std::uint64_t _calls[OperationCount] = {};
  Ending _ending;
  Tally _tally;
};

}  // namespace

Tally tryRegistryFaults(const Scenario& scenario) {
  const NoOutput silence;
  return Loop(scenario).registryFaults();
}

Tally tryAllocationFailures(const Scenario& scenario) {
  const NoOutput silence;
  return Loop(scenario).allocationFailures();
}

}  // namespace FaultTest
