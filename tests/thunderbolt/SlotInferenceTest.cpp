#include "model/RAIDMember.h"
#include "model/RAIDVolume.h"
#include "tests/thunderbolt/SlotTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using TestSupport::behindBridge;

// A member of a two-bay enclosure whose disk has gone is placed by way of another member.
class SlotInference : public SlotTest {
 protected:
  void SetUp() override { two.complete().addDisks({1, 2}).addSet({"SET", {1, 2}}); }

  std::string memberIn(int bay) const { return two.memberUUID(bay); }
};

TEST_F(SlotInference, PutsAMissingMemberIntoTheBayThatTheOtherOneDoesNotOccupy) {
  const HeldDevice device(UID);
  two.pullDisk(2);
  EXPECT_EQ(2, slotOf(device, memberIn(2), true));  // the other one is in 1
  EXPECT_THAT(log().lines(), ElementsAre(debug(CannotFindMember)));
  two.returnDisk(2);
  two.pullDisk(1);
  device->refresh();
  EXPECT_EQ(1, slotOf(device, memberIn(1), true));  // the other one is in 2
}

TEST_F(SlotInference, IsMadeOnlyOnRequest) {
  const HeldDevice device(UID);
  two.pullDisk(2);
  EXPECT_EQ(-1, slotOf(device, memberIn(2), false));
}

TEST_F(SlotInference, IsNotMadeForAMemberThatIsFound) {
  const HeldDevice device(UID);
  EXPECT_EQ(1, slotOf(device, memberIn(1), true));
  EXPECT_EQ(2, slotOf(device, memberIn(2), true));
}

// The two lowest bits of the other's slot are turned over, whatever slot it is.
TEST_F(SlotInference, TurnsOverTheTwoLowestBitsOfTheOthersSlot) {
  struct Row {
    const char* otherPort;
    int slot;
  };
  constexpr Row rows[] = {{"0", 2}, {"1", 1}, {"2", 0}, {"3", 7}, {"4", 6}};
  two.setStatus("SET", "Degraded");
  for (const Row& row : rows) {
    MemoryRegistry::setLocation(two.port(1), row.otherPort);
    const HeldDevice device(UID);
    two.pullDisk(2);
    EXPECT_EQ(row.slot, slotOf(device, memberIn(2), true)) << "port " << row.otherPort;
    two.returnDisk(2);
  }
}

TEST_F(SlotInference, WithNeitherMemberFoundAnswersTheOthersPositionInTheList) {
  const HeldDevice device(UID);
  two.pullDisk(1);
  two.pullDisk(2);
  EXPECT_EQ(2, slotOf(device, memberIn(1), true));  // the other one is second
  EXPECT_THAT(log().lines(), ElementsAre(debug(CannotFindMember), debug(CannotFindMember)));
  EXPECT_EQ(1, slotOf(device, memberIn(2), true));  // the other one is first
}

TEST_F(SlotInference, OfSeveralLooksAtTheFirstOtherMemberOnly) {
  MemoryRegistry::setProperty(
      two.set("SET"), "AppleRAID-Members",
      MemoryRegistry::Array{memberIn(2), "ABSENT-1", "ABSENT-0", memberIn(1)});
  const HeldDevice device(UID);  // in the list: ABSENT-0, ABSENT-1, bay 1, bay 2
  EXPECT_EQ(2, slotOf(device, "ABSENT-0", true));
  EXPECT_EQ(1, slotOf(device, "ABSENT-1", true));
  two.pullDisk(2);
  EXPECT_EQ(1, slotOf(device, memberIn(2), true));  // ABSENT-0 again, though bay 1 is known
}

TEST_F(SlotInference, WithAnotherMemberInNoBayAnswersItsPosition) {
  // Zero is the answer for a member beneath no port.
  addBareMember(behindBridge(two.bridge()), "A-PORTLESS");
  MemoryRegistry::setProperty(two.set("SET"), "AppleRAID-Members",
                              MemoryRegistry::Array{"A-PORTLESS", memberIn(2)});
  const HeldDevice device(UID);
  ASSERT_EQ(0, slotOf(device, "A-PORTLESS"));
  two.pullDisk(2);
  EXPECT_EQ(1, slotOf(device, memberIn(2), true));
}

TEST_F(SlotInference, WithNoOtherMemberIsUnknown) {
  addBareSet(addBareMember(two.partition(2), "ONLY"), "SINGLE", {"ONLY"});
  const HeldDevice device(UID);
  two.pullDisk(2);
  EXPECT_EQ(-1, slotOf(device, "ONLY", true));
  EXPECT_THAT(log().lines(), ElementsAre(debug(CannotFindMember)));
}

TEST_F(SlotInference, WithAVolumeThatHasLostItsMembersIsUnknown) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(2));
  member->ref();
  two.pullDisk(2);
  MemoryRegistry::removeProperty(two.set("SET"), "AppleRAID-Members");
  device->refresh();
  ASSERT_TRUE(member->volume()->members().empty());
  start();
  EXPECT_EQ(-1, device->locationOfMember(member, true));
  member->deref();
}

TEST_F(SlotInference, AMemberThatWasUnfiledIsPlacedByTheOneThatIsLeft) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(2));
  member->ref();
  two.pullDisk(2);
  MemoryRegistry::setProperty(two.set("SET"), "AppleRAID-Members",
                              MemoryRegistry::Array{memberIn(1)});
  device->refresh();
  start();
  EXPECT_EQ(2, device->locationOfMember(member, true));
  member->deref();
}

TEST_F(SlotInference, FollowsWhenTheParentsCanNotBeWalked) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(2));
  start();
  fail(Operation::IORegistryEntryCreateIterator, 1);
  EXPECT_EQ(2, device->locationOfMember(member, true));
  EXPECT_THAT(log().lines(), ElementsAre(message(CannotIterateParents)));
}

TEST_F(SlotInference, WithNeitherMembersParentsWalkedAnswersThePosition) {
  const HeldDevice device(UID);
  RAIDMember* member = memberOf(device, memberIn(1));
  start();
  MemoryRegistry::failCall(Operation::IORegistryEntryCreateIterator, 1, Repeat::FromThenOn);
  EXPECT_EQ(2, device->locationOfMember(member, true));
  MemoryRegistry::failNothing();
  EXPECT_THAT(log().lines(),
              ElementsAre(message(CannotIterateParents), message(CannotIterateParents)));
}

// Answers for all members but one itself.
class GuessingDevice : public ThunderboltDevice {
 public:
  GuessingDevice(std::uint64_t uid, int answer) : ThunderboltDevice(uid), _answer(answer) {}

  int locationOfMember(RAIDMember* member, bool inferSlot) override {
    asked.push_back(member->uuid() + (inferSlot ? " with inference" : " without"));
    heldWhenAsked = MemoryRegistry::accounts();
    return inferSlot ? ThunderboltDevice::locationOfMember(member, true) : _answer;
  }

  std::vector<std::string> asked;
  MemoryRegistry::Accounts heldWhenAsked;  // the last time

 private:
  int _answer;
};

TEST_F(SlotInference, GivesTheMembersEntryBackBeforeItAsksForTheOther) {
  auto* device = new GuessingDevice(UID, 1);
  device->ref();
  RAIDMember* member = device->raidVolumes().at(0)->members().at(1);
  start();
  const auto before = MemoryRegistry::accounts();
  fail(Operation::IORegistryEntryCreateIterator, 1);  // the entry is found, and not walked from
  EXPECT_EQ(2, device->locationOfMember(member, true));
  EXPECT_EQ(2U, device->asked.size());
  EXPECT_EQ(before.entries, device->heldWhenAsked.entries);
  EXPECT_EQ(0U, device->heldWhenAsked.iterators);
  TestSupport::settleVolumes(*device);
  device->deref();
}

TEST_F(SlotInference, AsksForTheOtherMemberThroughTheVirtualOperation) {
  struct Row {
    int answer, slot;
  };
  for (const Row& row : {Row{1, 2}, Row{2, 1}, Row{5, 6}, Row{0, 1}, Row{-1, 1}, Row{-9, 1}}) {
    auto* device = new GuessingDevice(UID, row.answer);
    device->ref();
    RAIDMember* member = device->raidVolumes().at(0)->members().at(1);
    two.pullDisk(2);
    start();
    EXPECT_EQ(row.slot, device->locationOfMember(member, true)) << row.answer;
    EXPECT_THAT(device->asked,
                ElementsAre(memberIn(2) + " with inference", memberIn(1) + " without"));
    two.returnDisk(2);
    TestSupport::settleVolumes(*device);
    device->deref();
  }
}

}  // namespace
}  // namespace RAIDMonitoring
