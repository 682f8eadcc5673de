#include <gtest/gtest.h>

#include <new>
#include <tuple>

#include "model/RAIDVolume.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

// Whatever call of the registry fails: nothing crashes, and no iterator and no value stays behind.
class RegistryFaults : public DeviceTest {
 protected:
  // Everything that a device does, once.
  static void liveOneLife() {
    const HeldDevice device(UID);
    device->refresh();
    for (const RAIDVolume* volume : device->raidVolumes()) {
      for (RAIDMember* member : volume->members())
        device->locationOfMember(member, true);
    }
    device->locationOfNotMember(2);
  }

  // Lets every call fail in turn, until a life makes fewer calls than the one that would fail.
  void failEveryCallOnce(Repeat repeat, Failure failure) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 1000000U);
      MemoryRegistry::failAnyCall(n, repeat, failure);
      const auto before = failableCalls();
      liveThroughLackOfMemory();
      const auto made = failableCalls() - before;
      MemoryRegistry::failNothing();
      ASSERT_EQ(0U, MemoryRegistry::accounts().iterators) << "call " << n;
      ASSERT_EQ(0U, MemoryRegistry::accounts().values) << "call " << n;
      ASSERT_EQ(0U, application().queuedEvents()) << "call " << n;
      if (made < n) return;
    }
  }

 private:
  // A value that could not be made is lack of memory, which passes through.
  static void liveThroughLackOfMemory() {
    try {
      liveOneLife();
    } catch (const std::bad_alloc&) {
    }
  }
  static std::uint64_t failableCalls() {
    std::uint64_t calls = 0;
    for (std::size_t i = 0; i < MemoryRegistry::OperationCount; ++i) {
      const auto operation = static_cast<Operation>(i);
      if (MemoryRegistry::canFail(operation)) calls += MemoryRegistry::calls(operation);
    }
    return calls;
  }
};

class EveryFault : public RegistryFaults,
                   public testing::WithParamInterface<std::tuple<bool, Repeat, Failure>> {
 protected:
  // What is kept of entries after a failure has tests of its own.
  void TearDown() override {
    for (const auto& entry : MemoryRegistry::accounts().entries) {
      expectKept(entry.id, entry.references);
    }
    RegistryFixture::TearDown();
  }
};

TEST_P(EveryFault, LeavesNoIteratorNoValueAndNoEventBehind) {
  const auto [threeBridges, repeat, failure] = GetParam();
  auto& enclosure = threeBridges ? five : two;
  enclosure.complete().addDisks({1, 2}).addSet({"A", {1, 2}, "Scratch", "Stripe"});
  failEveryCallOnce(repeat, failure);
}

INSTANTIATE_TEST_SUITE_P(OfADevicesLife, EveryFault,
                         testing::Combine(testing::Bool(),
                                          testing::Values(Repeat::Once, Repeat::FromThenOn),
                                          testing::Values(Failure::Error, Failure::NullSuccess)));

}  // namespace
}  // namespace RAIDMonitoring
