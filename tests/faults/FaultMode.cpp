#include "tests/faults/FaultMode.h"

#include <memory>
#include <optional>

#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/support/FailingMemory.h"

namespace FaultTest {
namespace {

using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::OperationCount;
using MemoryRegistry::Repeat;

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

FaultMode registryFault(std::string name, std::function<std::uint64_t()> count,
                        std::function<void(std::uint64_t)> fail) {
  return {std::move(name), std::move(count), std::move(fail), MemoryRegistry::failNothing};
}

FaultMode nullHandleOf(Operation operation) {
  return registryFault(
      "null handle of operation " + std::to_string(static_cast<unsigned>(operation)),
      [operation] { return MemoryRegistry::calls(operation); },
      [operation](std::uint64_t n) {
        MemoryRegistry::failCall(operation, n, Repeat::Once, Failure::NullSuccess);
      });
}

}  // namespace

std::vector<FaultMode> registryFaultModes() {
  std::vector<FaultMode> modes;
  modes.push_back(registryFault("operation, once", failableCalls, [](std::uint64_t n) {
    MemoryRegistry::failAnyCall(n, Repeat::Once);
  }));
  modes.push_back(registryFault("operation, for good", failableCalls, [](std::uint64_t n) {
    MemoryRegistry::failAnyCall(n, Repeat::FromThenOn);
  }));
  modes.back().isBetween = true;
  for (const Operation operation : WithHandles)
    modes.push_back(nullHandleOf(operation));
  return modes;
}

FaultMode allocationFailureMode() {
  const auto failing = std::make_shared<std::optional<TestSupport::FailingAllocation>>();
  return {"allocation", TestSupport::madeAllocations,
          [failing](std::uint64_t n) { failing->emplace(n - 1); }, [failing] { failing->reset(); },
          1};
}

}  // namespace FaultTest
