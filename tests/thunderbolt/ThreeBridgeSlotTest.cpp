#include "tests/thunderbolt/SlotTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::addEntry;
using TestSupport::behindBridge;

// The slot of a member behind one of several bridges: the port's number and the bridge's offset.
class ThreeBridgeSlot : public SlotTest {
 protected:
  void SetUp() override { five.complete(); }

  void addSet(const std::vector<int>& bays) { five.addDisks(bays).addSet({"SET", bays}); }
  std::string memberIn(int bay) const { return five.memberUUID(bay); }

  // Leaves one inner bridge, the one at 9, so that it can be moved anywhere. Bay 1 is its port 0.
  void leaveOneBridge() {
    MemoryRegistry::terminate(five.innerBridge(5));
    MemoryRegistry::terminate(five.innerBridge(7));
    addSet({1, 2});
  }
  int slotWithBridges(const char* inner, const char* middle, const char* outermost) {
    MemoryRegistry::setLocation(five.innerBridge(9), inner);
    MemoryRegistry::setLocation(five.innerBridge(0), middle);
    MemoryRegistry::setLocation(host.rootPort(), outermost);
    five.addPCIPath();
    const HeldDevice device(UID);
    return slotOf(device, memberIn(1));
  }
};

TEST_F(ThreeBridgeSlot, IsThePortPlusTheBridgesOffset) {
  addSet({6, 5, 4, 3, 2, 1});
  const HeldDevice device(UID);
  for (int bay = 1; bay <= 6; ++bay) {
    EXPECT_EQ(bay, slotOf(device, memberIn(bay)));
    EXPECT_EQ(bay, slotOf(device, memberIn(bay), true));
    EXPECT_THAT(log().lines(), IsEmpty());
  }
}

TEST_F(ThreeBridgeSlot, IsNotLimitedToTheBayCount) {
  addSet({6});
  const HeldDevice device(UID);
  ASSERT_EQ(5, device->bayCount());
  EXPECT_EQ(6, slotOf(device, memberIn(6)));
}

TEST_F(ThreeBridgeSlot, EveryBridgeNumberHasItsOffsetOrNone) {
  struct Row {
    const char* location;
    int slot;
  };
  constexpr Row rows[] = {{"7", 3},   {"9", 1},   {"5", 5},  {"3", -1},  {"0", -1},
                          {"1", -1},  {"4", -1},  {"6", -1}, {"8", -1},  {"10", -1},
                          {"7,0", 3}, {"9,3", 1}, {"05", 5}, {"15", -1}, {"a", -1}};
  leaveOneBridge();
  for (const Row& row : rows) {
    EXPECT_EQ(row.slot, slotWithBridges(row.location, "0", "1,1")) << row.location;
  }
}

TEST_F(ThreeBridgeSlot, PassesOverBridgesUpToFour) {
  leaveOneBridge();
  EXPECT_EQ(3, slotWithBridges("0", "7", "1"));
  EXPECT_EQ(1, slotWithBridges("4", "9", "7"));
  EXPECT_EQ(5, slotWithBridges("a", "5", "7"));  // no number: nothing was read yet
}

TEST_F(ThreeBridgeSlot, StopsAtTheNearestBridgeAboveFour) {
  leaveOneBridge();
  EXPECT_EQ(5, slotWithBridges("5", "9", "7"));
  EXPECT_EQ(-1, slotWithBridges("6", "9", "7"));
}

TEST_F(ThreeBridgeSlot, EndsTheWalkAtThatBridge) {
  addSet({1});
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(1));
  const auto steps = [&] {
    start();
    const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
    EXPECT_EQ(1, device->locationOfMember(member, false));
    return MemoryRegistry::calls(Operation::IOIteratorNext) - before;
  };
  const auto alone = steps();
  MemoryRegistry::attach(five.partition(1), host.tunnel(1));  // a second way up
  EXPECT_EQ(alone, steps());
}

TEST_F(ThreeBridgeSlot, TheLastBridgeReadDecidesWhenNoneIsAboveFour) {
  leaveOneBridge();
  EXPECT_EQ(-1, slotWithBridges("3", "0", "0"));
  EXPECT_EQ(-1, slotWithBridges("3", "0", "4"));
  EXPECT_EQ(3, slotWithBridges("3", "0", "7"));
  EXPECT_EQ(1, slotWithBridges("0", "a", "9"));
}

// The offset is added to the -1 that stands for "no port".
TEST_F(ThreeBridgeSlot, WithoutAPortTheOffsetIsAddedToMinusOneAndTheLastBridgeDecides) {
  struct Row {
    const char* outermost;
    int slot;
  };
  constexpr Row rows[] = {{"7", 2}, {"9", 0}, {"5", 4}, {"1,1", -1}, {"0", -1}, {"8", -1}};
  addBareSet(addBareMember(behindBridge(five.innerBridge(9)), "M"), "BARE", {"M"});
  five.addDisk(1);
  for (const Row& row : rows) {
    MemoryRegistry::setLocation(host.rootPort(), row.outermost);
    five.addPCIPath();
    const HeldDevice device(UID);
    EXPECT_EQ(row.slot, slotOf(device, "M")) << row.outermost;
  }
}

TEST_F(ThreeBridgeSlot, WithAPortThatHasNoNumberIsLikeOneWithoutAPort) {
  addSet({3});
  MemoryRegistry::setLocation(five.port(3), "a");
  MemoryRegistry::setLocation(host.rootPort(), "7");
  five.addPCIPath();
  const HeldDevice device(UID);
  EXPECT_EQ(2, slotOf(device, memberIn(3)));
}

TEST_F(ThreeBridgeSlot, OnlyABridgeByNameCounts) {
  leaveOneBridge();
  for (const MemoryRegistry::PropertyValue& name :
       {MemoryRegistry::PropertyValue("pci-bridge2"), MemoryRegistry::PropertyValue("PCI-bridge"),
        MemoryRegistry::PropertyValue(""), MemoryRegistry::PropertyValue(9)}) {
    MemoryRegistry::setProperty(five.innerBridge(9), "IOName", name);
    const HeldDevice device(UID);
    EXPECT_EQ(-1, slotOf(device, memberIn(1)));
  }
  MemoryRegistry::removeProperty(five.innerBridge(9), "IOName");
  const HeldDevice nameless(UID);
  EXPECT_EQ(-1, slotOf(nameless, memberIn(1)));
}

TEST_F(ThreeBridgeSlot, OnlyABridgeByClassCounts) {
  addSet({1});
  const EntryID driver = behindBridge(five.innerBridge(9));
  MemoryRegistry::setProperty(driver, "IOName", "pci-bridge");
  MemoryRegistry::setLocation(driver, "7");
  const HeldDevice device(UID);
  EXPECT_EQ(1, slotOf(device, memberIn(1)));
}

// Unlike in a two-bay enclosure, the walk goes on behind the first port, until a bridge ends it.
TEST_F(ThreeBridgeSlot, IsThatOfTheLastPortBeneathTheBridge) {
  five.addDisk(1);
  const EntryID inner = addEntry(five.port(1), "AppleAHCIPort", "PMP", "1");
  addBareSet(addBareMember(inner, "M"), "BARE", {"M"});
  const HeldDevice device(UID);
  EXPECT_EQ(1, slotOf(device, "M"));
}

TEST_F(ThreeBridgeSlot, OfAMemberThatHasGoneIsUnknownWithAMessageAndNeverInferred) {
  addSet({1, 2});
  const HeldDevice device(UID);
  five.pullDisk(2);
  for (const bool inferSlot : {false, true}) {
    EXPECT_EQ(-1, slotOf(device, memberIn(2), inferSlot));
    EXPECT_THAT(log().lines(), ElementsAre(message(CannotFindMember)));
  }
}

TEST_F(ThreeBridgeSlot, IsUnknownWhenTheParentsCanNotBeWalked) {
  addSet({1, 2});
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(1));
  for (const bool inferSlot : {false, true}) {
    start();
    fail(Operation::IORegistryEntryCreateIterator, 1);
    EXPECT_EQ(-1, device->locationOfMember(member, inferSlot));
    EXPECT_THAT(log().lines(), ElementsAre(message(CannotIterateParents)));
  }
}

TEST_F(ThreeBridgeSlot, IsUnknownWhenTheLookUpFails) {
  addSet({1});
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(1));
  start();
  fail(Operation::IORegistryEntryFromPath, 1);
  EXPECT_EQ(-1, device->locationOfMember(member, true));
  EXPECT_THAT(log().lines(), ElementsAre(message(CannotFindMember)));
}

}  // namespace
}  // namespace RAIDMonitoring
