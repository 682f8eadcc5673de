#include "application/session/Discovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using MemoryRegistry::Operation;
using MemoryRegistry::Repeat;
using Program::Discovery;
using testing::ElementsAre;
using testing::Optional;

class DiscoveryTest : public testing::Test {
 protected:
  DiscoveryTest() : enclosure(host, TestSupport::twoBay(7)) { enclosure.complete().addDisks({1}); }
  ~DiscoveryTest() override {
    const MemoryRegistry::Accounts accounts = MemoryRegistry::accounts();
    EXPECT_TRUE(accounts.entries.empty());
    EXPECT_EQ(0U, accounts.iterators);
    EXPECT_EQ(0U, accounts.values);
    MemoryRegistry::reset();
  }

  TestSupport::HostTree host = (MemoryRegistry::reset(), TestSupport::HostTree());
  TestSupport::EnclosureBuilder enclosure;
};

TEST_F(DiscoveryTest, FindsTheDevicesAndKeepsNothing) {
  EXPECT_THAT(Discovery::devicesInRegistry(), Optional(ElementsAre(7U)));
}

TEST_F(DiscoveryTest, FindsASwitchUnderSeveralParentsOnce) {
  MemoryRegistry::attach(enclosure.switchEntry(), MemoryRegistry::root());
  EXPECT_THAT(Discovery::devicesInRegistry(), Optional(ElementsAre(7U)));
}

TEST_F(DiscoveryTest, FindsTwoSwitchesWithOneUIDOnce) {
  TestSupport::EnclosureBuilder twin(host, TestSupport::twoBay(7, 1));
  twin.addSwitch();
  EXPECT_THAT(Discovery::devicesInRegistry(), Optional(ElementsAre(7U)));
}

TEST_F(DiscoveryTest, StartsOverWhenTheRegistryHasChangedUnderTheWalk) {
  MemoryRegistry::failCall(Operation::IOIteratorIsValid, 1, Repeat::Once);
  EXPECT_THAT(Discovery::devicesInRegistry(), Optional(ElementsAre(7U)));
  EXPECT_EQ(1U, MemoryRegistry::calls(Operation::IOIteratorReset));
}

TEST_F(DiscoveryTest, GivesALookUpWhenTheRegistryNeverHoldsStill) {
  MemoryRegistry::failCall(Operation::IOIteratorIsValid, 1, Repeat::FromThenOn);
  EXPECT_EQ(std::nullopt, Discovery::devicesInRegistry());
}

TEST_F(DiscoveryTest, GivesALookUpWhenThereIsNoIterator) {
  MemoryRegistry::failCall(Operation::IORegistryCreateIterator, 1, Repeat::Once);
  EXPECT_EQ(std::nullopt, Discovery::devicesInRegistry());
}

}  // namespace
}  // namespace ProgramTest
