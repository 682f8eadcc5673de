#include "tests/thunderbolt/SlotTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::addEntry;
using TestSupport::behindBridge;

// Whether a disk sits in a slot, whatever is on it: the answer is the slot itself, or that of the
// disk looked at last.
class OccupiedSlot : public SlotTest {
 protected:
  static constexpr int NoSlot = 12345;

  int ask(const HeldDevice& device, int slot) {
    start();
    return device->locationOfNotMember(slot);
  }
};

class OccupiedTwoBaySlot : public OccupiedSlot {
 protected:
  void SetUp() override { two.complete(); }

  // What a walk beneath the bridge yields up to `last`, and the bridge itself.
  std::vector<EntryID> bridgeAndEntriesUpTo(EntryID last) const {
    std::vector<EntryID> entries{two.bridge()};
    for (const EntryID entry : encountersBeneath(two.bridge())) {
      entries.push_back(entry);
      if (entry == last) break;
    }
    return entries;
  }
  static constexpr EntryID ToTheEnd = 0;
};

TEST_F(OccupiedTwoBaySlot, IsAnsweredAndKeepsEveryEntryUpToItsDisk) {
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  const HeldDevice device(UID);
  EXPECT_EQ(2, ask(device, 2));
  EXPECT_THAT(log().lines(), IsEmpty());
  expectKeptSince(bridgeAndEntriesUpTo(two.disk(2)));
}

TEST_F(OccupiedTwoBaySlot, EndsTheWalkAtItsDisk) {
  two.addDisks({1, 2});
  const HeldDevice device(UID);
  EXPECT_EQ(1, ask(device, 1));
  EXPECT_EQ(0U, keptSince(two.wholeMedia(1)));
  EXPECT_EQ(0U, keptSince(two.port(2)));
  expectKeptSince(bridgeAndEntriesUpTo(two.disk(1)));
}

TEST_F(OccupiedTwoBaySlot, ThatIsEmptyAnswersTheLastDisksAndKeepsEveryEntryMet) {
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  const HeldDevice device(UID);
  EXPECT_EQ(2, ask(device, 3));
  EXPECT_EQ(2U, keptSince(two.set("SET")));  // met beneath both members
  EXPECT_EQ(1U, keptSince(two.setMedia("SET")));
  expectKeptSince(bridgeAndEntriesUpTo(ToTheEnd));
}

TEST_F(OccupiedTwoBaySlot, WithOneDiskInTheOtherBayAnswersThatBay) {
  two.addDisk(1);
  const HeldDevice device(UID);
  EXPECT_EQ(1, ask(device, 2));
  expectKeptSince(bridgeAndEntriesUpTo(ToTheEnd));
}

TEST_F(OccupiedTwoBaySlot, WithNoDiskAtAllIsUnknown) {
  const HeldDevice device(UID);
  EXPECT_EQ(-1, ask(device, 1));
  EXPECT_THAT(log().lines(), IsEmpty());
  expectKeptSince(bridgeAndEntriesUpTo(ToTheEnd));
}

TEST_F(OccupiedTwoBaySlot, AskedForAsUnknownIsAnsweredByTheFirstEntry) {
  two.addDisks({1, 2});
  const HeldDevice device(UID);
  EXPECT_EQ(-1, ask(device, -1));
  expectKeptSince(bridgeAndEntriesUpTo(behindBridge(two.bridge())));
}

TEST_F(OccupiedTwoBaySlot, IsTheSameForBothModels) {
  MemoryRegistry::setProperty(two.switchEntry(), "Device Model ID", 1);
  two.addDisks({1, 2});
  const HeldDevice device(UID);
  EXPECT_EQ(2, ask(device, 2));
  expectKeptSince(bridgeAndEntriesUpTo(two.disk(2)));
}

TEST_F(OccupiedTwoBaySlot, IsOneMoreThanThePortsLocationAndPassesOverBridges) {
  two.addDisk(2);
  MemoryRegistry::setLocation(two.port(2), "7,0");
  const HeldDevice device(UID);
  EXPECT_EQ(8, ask(device, NoSlot));
  expectKeptSince(bridgeAndEntriesUpTo(ToTheEnd));
}

// One is added for every disk, also when its port has no number.
TEST_F(OccupiedTwoBaySlot, OfADiskWhosePortHasNoNumberIsOneMoreThanTheLastDisks) {
  two.addDisks({1, 2});
  MemoryRegistry::setLocation(two.port(1), "4");
  MemoryRegistry::setLocation(two.port(2), "a");
  const HeldDevice device(UID);
  EXPECT_EQ(6, ask(device, NoSlot));
  expectKeptSince(bridgeAndEntriesUpTo(ToTheEnd));
}

TEST_F(OccupiedTwoBaySlot, OfADiskWhoseParentCanNotBeHadIsOneMoreThanTheLast) {
  two.addDisk(2);
  const HeldDevice device(UID);
  for (const FailureRow& row : bothFailures) {
    fail(Operation::IORegistryEntryGetParentEntry, 1, row.failure);
    EXPECT_EQ(0, ask(device, NoSlot)) << row.name;
    expectKeptSince(bridgeAndEntriesUpTo(ToTheEnd));
  }
}

TEST_F(OccupiedTwoBaySlot, DoesNotDependOnThePathsItReads) {
  two.addDisks({1, 2});
  const HeldDevice device(UID);
  const auto calls = MemoryRegistry::calls(Operation::IORegistryEntryGetPath);
  MemoryRegistry::failCall(Operation::IORegistryEntryGetPath, 1, Repeat::FromThenOn);
  EXPECT_EQ(2, ask(device, 2));
  MemoryRegistry::failNothing();
  const std::vector<EntryID> met = bridgeAndEntriesUpTo(two.disk(2));
  EXPECT_EQ(met.size() - 1, MemoryRegistry::calls(Operation::IORegistryEntryGetPath) - calls);
  EXPECT_THAT(log().lines(), IsEmpty());
  expectKeptSince(met);
}

TEST_F(OccupiedTwoBaySlot, IsUnknownWhenTheBridgeHasGone) {
  two.addDisk(1);
  const HeldDevice device(UID);
  two.unplug();
  EXPECT_EQ(-1, ask(device, 1));
  EXPECT_THAT(log().lines(), ElementsAre(message(CannotFindMember), message(CannotIterateBridge)));
}

TEST_F(OccupiedTwoBaySlot, IsUnknownBeforeTheBridgeIsKnown) {
  MemoryRegistry::removeProperty(two.upstreamPort(), "PCI Path");
  HeldDevice device(UID);
  EXPECT_EQ(-1, ask(device, 1));
  EXPECT_THAT(log().lines(), ElementsAre(message(CannotFindMember), message(CannotIterateBridge)));
  device.drop();
  start();
}

TEST_F(OccupiedTwoBaySlot, IsUnknownWhenTheBridgeCanNotBeWalked) {
  two.addDisk(1);
  const HeldDevice device(UID);
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    fail(Operation::IORegistryEntryCreateIterator, 1, row.failure);
    EXPECT_EQ(-1, ask(device, 1));
    EXPECT_THAT(log().lines(), ElementsAre(message(CannotIterateBridge)));
    expectKeptSince({two.bridge()});
  }
}

class OccupiedThreeBridgeSlot : public OccupiedSlot {
 protected:
  void SetUp() override { five.complete(); }

  // Unlike the two-bay walk this one gives its entries back.
  int askAndKeepTheBridgeAlone(const HeldDevice& device, int slot) {
    const int answer = ask(device, slot);
    expectKeptSince({five.bridge()});
    EXPECT_THAT(log().lines(), IsEmpty());
    return answer;
  }
};

TEST_F(OccupiedThreeBridgeSlot, IsAnsweredForEveryBay) {
  five.addDisks({1, 2, 3, 4, 5, 6}).addSet({"SET", {1, 2}});
  const HeldDevice device(UID);
  for (int bay = 1; bay <= 6; ++bay)
    EXPECT_EQ(bay, askAndKeepTheBridgeAlone(device, bay));
  EXPECT_EQ(2, askAndKeepTheBridgeAlone(device, 7));  // the bridge at 9 is met last
}

TEST_F(OccupiedThreeBridgeSlot, OnPortsZeroOfTwoBridgesAnswersForBothAndOtherwiseTheLast) {
  five.addDisks({1, 3});  // port 0 of bridge 9, and of bridge 7
  const HeldDevice device(UID);
  EXPECT_EQ(3, askAndKeepTheBridgeAlone(device, 3));
  EXPECT_EQ(1, askAndKeepTheBridgeAlone(device, 1));
  EXPECT_EQ(1, askAndKeepTheBridgeAlone(device, 2));
}

TEST_F(OccupiedThreeBridgeSlot, WithNoDiskAtAllIsUnknown) {
  const HeldDevice device(UID);
  EXPECT_EQ(-1, askAndKeepTheBridgeAlone(device, 1));
}

TEST_F(OccupiedThreeBridgeSlot, AskedForAsUnknownIsAnsweredByTheFirstEntry) {
  five.addDisks({1, 2});
  const HeldDevice device(UID);
  const auto steps = MemoryRegistry::calls(Operation::IOIteratorNext);
  EXPECT_EQ(-1, askAndKeepTheBridgeAlone(device, -1));
  EXPECT_EQ(steps + 1, MemoryRegistry::calls(Operation::IOIteratorNext));
}

TEST_F(OccupiedThreeBridgeSlot, OfADiskBehindAnotherBridgeIsUnknown) {
  five.addDisk(5);
  MemoryRegistry::setLocation(five.innerBridge(5), "3");
  const HeldDevice device(UID);
  EXPECT_EQ(-1, askAndKeepTheBridgeAlone(device, NoSlot));
}

TEST_F(OccupiedThreeBridgeSlot, TheLastBridgeMetCountsForDisksThatAreNotBehindIt) {
  const EntryID late = addEntry(behindBridge(five.innerBridge(0)), "AppleAHCIPort", "PRT1", "1");
  addEntry(late, "IOAHCIDevice");
  const HeldDevice device(UID);
  EXPECT_EQ(2, askAndKeepTheBridgeAlone(device, NoSlot));  // behind the bridge at 9, as it seems
}

TEST_F(OccupiedThreeBridgeSlot, ABridgeWithoutANumberLeavesTheLastOneInForce) {
  five.addDisks({5, 4});
  MemoryRegistry::setLocation(five.innerBridge(7), "b");
  const HeldDevice device(UID);
  EXPECT_EQ(6, askAndKeepTheBridgeAlone(device, NoSlot));  // port 1 behind 5, as it seems
}

// The offset is added to what the disk before has left.
TEST_F(OccupiedThreeBridgeSlot, OfADiskWhosePortHasNoNumberAddsTheOffsetToTheLastDisks) {
  five.addDisks({3, 4});
  MemoryRegistry::setLocation(five.port(4), "c");
  const HeldDevice device(UID);
  EXPECT_EQ(6, askAndKeepTheBridgeAlone(device, NoSlot));
}

TEST_F(OccupiedThreeBridgeSlot, OfTheFirstDiskWithoutAPortNumberAddsTheOffsetToMinusOne) {
  five.addDisk(3);
  MemoryRegistry::setLocation(five.port(3), "c");
  const HeldDevice device(UID);
  EXPECT_EQ(2, askAndKeepTheBridgeAlone(device, NoSlot));
}

TEST_F(OccupiedThreeBridgeSlot, OnlyABridgeByNameCounts) {
  five.addDisk(5);
  MemoryRegistry::setProperty(five.innerBridge(5), "IOName", "PCI-bridge");
  const HeldDevice device(UID);
  EXPECT_EQ(-1, askAndKeepTheBridgeAlone(device, NoSlot));  // the bridge at 0 is in force
}

TEST_F(OccupiedThreeBridgeSlot, ADiskIsRecognisedByItsClassOrOneDerivedFromIt) {
  MemoryRegistry::EntryDescription description;
  description.className = "ExampleDisk";
  description.inheritance = {"IORegistryEntry", "IOService", "IOAHCIDevice", "ExampleDisk"};
  MemoryRegistry::add(five.port(4), std::move(description));
  const HeldDevice device(UID);
  EXPECT_EQ(4, askAndKeepTheBridgeAlone(device, 4));
}

TEST_F(OccupiedThreeBridgeSlot, IsUnknownWhenTheBridgeCanNotBeWalked) {
  five.addDisk(1);
  const HeldDevice device(UID);
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    fail(Operation::IORegistryEntryCreateIterator, 1, row.failure);
    EXPECT_EQ(-1, ask(device, 1));
    EXPECT_THAT(log().lines(), ElementsAre(message(CannotIterateBridge)));
    expectKeptSince({five.bridge()});
  }
}

TEST_F(OccupiedThreeBridgeSlot, IsUnknownWhenTheLookUpOfTheBridgeFails) {
  five.addDisk(1);
  const HeldDevice device(UID);
  fail(Operation::IORegistryEntryFromPath, 1);
  EXPECT_EQ(-1, ask(device, 1));
  EXPECT_THAT(log().lines(), ElementsAre(message(CannotFindMember), message(CannotIterateBridge)));
}

}  // namespace
}  // namespace RAIDMonitoring
