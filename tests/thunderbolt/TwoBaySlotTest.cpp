#include "tests/thunderbolt/SlotTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::addEntry;
using TestSupport::behindBridge;

class TwoBaySlot : public SlotTest {
 protected:
  void SetUp() override { two.complete().addDisks({1, 2}).addSet({"SET", {1, 2}}); }

  std::string memberIn(int bay) const { return two.memberUUID(bay); }
};

TEST_F(TwoBaySlot, IsOneMoreThanThePortsLocation) {
  const HeldDevice device(UID);
  EXPECT_EQ(1, slotOf(device, memberIn(1)));
  EXPECT_EQ(2, slotOf(device, memberIn(2)));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(TwoBaySlot, IsTheSameForBothModels) {
  MemoryRegistry::setProperty(two.switchEntry(), "Device Model ID", 1);
  const HeldDevice device(UID);
  ASSERT_EQ(1U, device->modelID());
  EXPECT_EQ(1, slotOf(device, memberIn(1)));
  EXPECT_EQ(2, slotOf(device, memberIn(2), true));
}

TEST_F(TwoBaySlot, FollowsFromTheLocationsDecimalStart) {
  struct Row {
    const char* location;
    int slot;
  };
  constexpr Row rows[] = {{"0", 1},  {"1", 2},   {"5", 6},    {"7,0", 8}, {"1,3", 2},
                          {"03", 4}, {"10", 11}, {"1F,2", 2}, {"a", 0},   {"F1", 0}};
  for (const Row& row : rows) {
    MemoryRegistry::setLocation(two.port(1), row.location);
    const HeldDevice device(UID);
    EXPECT_EQ(row.slot, slotOf(device, memberIn(1))) << row.location;
  }
}

TEST_F(TwoBaySlot, IsNotLimitedToTheBayCount) {
  MemoryRegistry::setLocation(two.port(2), "6");
  const HeldDevice device(UID);
  ASSERT_EQ(2, device->bayCount());
  EXPECT_EQ(7, slotOf(device, memberIn(2)));
}

TEST_F(TwoBaySlot, IsThatOfTheNearestPort) {
  const EntryID inner = addEntry(two.port(1), "AppleAHCIPort", "PMP", "1");
  addBareSet(addBareMember(inner, "M"), "BARE", {"M"});
  const HeldDevice device(UID);
  EXPECT_EQ(2, slotOf(device, "M"));
}

TEST_F(TwoBaySlot, EndsTheWalkAtThePort) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(2));
  const auto steps = [&] {
    start();
    const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
    EXPECT_EQ(2, device->locationOfMember(member, false));
    return MemoryRegistry::calls(Operation::IOIteratorNext) - before;
  };
  const auto alone = steps();
  MemoryRegistry::attach(two.partition(2), host.tunnel(1));  // a second way up
  EXPECT_EQ(alone, steps());
}

TEST_F(TwoBaySlot, IsThatOfTheNextPortWhenTheNearestHasNoNumber) {
  MemoryRegistry::setLocation(two.port(1), "3");
  const EntryID inner = addEntry(two.port(1), "AppleAHCIPort", "PMP");
  addBareSet(addBareMember(inner, "M"), "BARE", {"M"});
  const HeldDevice device(UID);
  EXPECT_EQ(4, slotOf(device, "M"));
}

TEST_F(TwoBaySlot, CountsWithAClassDerivedFromAPort) {
  MemoryRegistry::EntryDescription description;
  description.className = "ExamplePort";
  description.inheritance = {"IORegistryEntry", "IOService", "AppleAHCIPort", "ExamplePort"};
  description.location = "1";
  const EntryID port = MemoryRegistry::add(behindBridge(two.bridge()), std::move(description));
  addBareSet(addBareMember(port, "M"), "BARE", {"M"});
  const HeldDevice device(UID);
  EXPECT_EQ(2, slotOf(device, "M"));
}

TEST_F(TwoBaySlot, OfAMemberBeneathNoPortIsZeroAndNotInferred) {
  addBareSet(addBareMember(behindBridge(two.bridge()), "M"), "BARE", {"M", memberIn(1)});
  const HeldDevice device(UID);
  EXPECT_EQ(0, slotOf(device, "M"));
  EXPECT_EQ(0, slotOf(device, "M", true));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(TwoBaySlot, OfAMemberThatHasGoneIsUnknown) {
  const HeldDevice device(UID);
  two.pullDisk(2);
  EXPECT_EQ(-1, slotOf(device, memberIn(2)));
  EXPECT_THAT(log().lines(), ElementsAre(debug(CannotFindMember)));
  EXPECT_EQ(1, slotOf(device, memberIn(1)));
}

TEST_F(TwoBaySlot, OfAMemberThatWasNeverFoundIsUnknown) {
  MemoryRegistry::setProperty(two.set("SET"), "AppleRAID-Members",
                              MemoryRegistry::Array{memberIn(1), "ABSENT"});
  const HeldDevice device(UID);
  EXPECT_EQ(-1, slotOf(device, "ABSENT"));
  EXPECT_THAT(log().lines(), ElementsAre(debug(CannotFindMember)));
}

TEST_F(TwoBaySlot, IsUnknownWhenTheParentsCanNotBeWalked) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(1));
  start();
  fail(Operation::IORegistryEntryCreateIterator, 1);
  EXPECT_EQ(-1, device->locationOfMember(member, false));
  EXPECT_THAT(log().lines(), ElementsAre(message(CannotIterateParents)));
}

TEST_F(TwoBaySlot, IsUnknownWhenTheLookUpFails) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(1));
  start();
  fail(Operation::IORegistryEntryFromPath, 1);
  EXPECT_EQ(-1, device->locationOfMember(member, false));
  EXPECT_THAT(log().lines(), ElementsAre(debug(CannotFindMember)));
}

TEST_F(TwoBaySlot, IsZeroWhenThePortsLocationCanNotBeRead) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(2));
  start();
  fail(Operation::IORegistryEntryGetLocationInPlane, 1);
  EXPECT_EQ(0, device->locationOfMember(member, false));
}

TEST_F(TwoBaySlot, OfOtherVendorsAndModelsIsUnknownWithoutALookAtTheRegistry) {
  for (const UnlocatedRow& row : unlocated) {
    MemoryRegistry::setProperty(two.switchEntry(), "Device Vendor ID",
                                MemoryRegistry::number64(row.vendor));
    MemoryRegistry::setProperty(two.switchEntry(), "Device Model ID",
                                MemoryRegistry::number64(row.model));
    const HeldDevice device(UID);
    RAIDMember* member = memberOf(device, memberIn(1));
    start();
    const auto calls = MemoryRegistry::calls();
    EXPECT_EQ(-1, device->locationOfMember(member, false)) << row.vendor << ", " << row.model;
    EXPECT_EQ(-1, device->locationOfMember(member, true)) << row.vendor << ", " << row.model;
    for (const int slot : {1, 2, 0, 5}) {
      EXPECT_EQ(-1, device->locationOfNotMember(slot)) << row.vendor << ", " << row.model;
    }
    EXPECT_EQ(calls, MemoryRegistry::calls()) << row.vendor << ", " << row.model;
    EXPECT_THAT(log().lines(), IsEmpty());
  }
}

}  // namespace
}  // namespace RAIDMonitoring
