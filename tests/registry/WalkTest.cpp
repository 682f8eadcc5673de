#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::attach;
using MemoryRegistry::detach;

// Two members, one set beneath both, one media beneath the set.
class WalkTest : public RegistryFixture {
 protected:
  const EntryID top = add(root, "Top");
  const EntryID portA = add(top, "PortA");
  const EntryID memberA = add(portA, "MemberA");
  const EntryID set = add(memberA, "Set");
  const EntryID media = add(set, "Media");
  const EntryID portB = add(top, "PortB");
  const EntryID memberB = add(portB, "MemberB");

  void SetUp() override { attach(set, memberB); }
};

TEST_F(WalkTest, GoesDepthFirstAndNeverReturnsItsStart) {
  EXPECT_EQ((EntryIDs{memberA, set, media}), rest(walkFrom(portA, Down)));
}

TEST_F(WalkTest, ReturnsASharedEntryAtEveryEncounterAndDescendsIntoItOnce) {
  EXPECT_EQ((EntryIDs{portA, memberA, set, media, portB, memberB, set}), rest(walkFrom(top, Down)));
}

TEST_F(WalkTest, UpwardsClimbsTheFirstParentToTheRootAndThenTheSecond) {
  EXPECT_EQ((EntryIDs{memberA, portA, top, root, memberB, portB, top}), rest(walkFrom(set, Up)));
}

TEST_F(WalkTest, UpwardsFromTheRootIsEmpty) { EXPECT_EQ(EntryIDs(), rest(walkFrom(root, Up))); }

TEST_F(WalkTest, WithoutRecursionReturnsTheChildrenAlone) {
  EXPECT_EQ((EntryIDs{portA, portB}), rest(walkFrom(top, 0)));
}

TEST_F(WalkTest, WithoutRecursionUpwardsReturnsTheParentsInOrderOfAttachment) {
  EXPECT_EQ((EntryIDs{memberA, memberB}), rest(walkFrom(set, kIORegistryIterateParents)));
}

TEST_F(WalkTest, FromTheRegistryStartsBelowTheRoot) {
  Handle iterator;
  ASSERT_EQ(kIOReturnSuccess,
            IORegistryCreateIterator(kIOMasterPortDefault, "IOService", Down, iterator.receive()));
  EXPECT_EQ((EntryIDs{top, portA, memberA, set, media, portB, memberB, set}), rest(iterator));
}

TEST_F(WalkTest, DetachingClosesTheGapAndReattachingMovesToTheEnd) {
  const EntryID portC = add(top, "PortC");
  detach(portA, top);
  EXPECT_EQ((EntryIDs{portB, portC}), rest(walkFrom(top, 0)));
  attach(portA, top);
  EXPECT_EQ((EntryIDs{portB, portC, portA}), rest(walkFrom(top, 0)));
  detach(set, memberA);
  attach(set, memberA);
  EXPECT_EQ((EntryIDs{memberB, memberA}), rest(walkFrom(set, kIORegistryIterateParents)));
}

TEST_F(WalkTest, GivesNothingMoreAfterItsEndUntilItIsReset) {
  const auto iterator = walkFrom(set, Down);
  EXPECT_EQ(EntryIDs{media}, rest(iterator));
  EXPECT_EQ(0U, IOIteratorNext(iterator.get()));
  EXPECT_EQ(0U, IOIteratorNext(iterator.get()));
  IOIteratorReset(iterator.get());
  EXPECT_EQ(EntryIDs{media}, rest(iterator));
}

TEST_F(WalkTest, ResetInTheMiddleForgetsWhatWasMet) {
  const auto iterator = walkFrom(top, Down);
  for (int step = 0; step < 4; ++step)
    next(iterator);
  IOIteratorReset(iterator.get());
  EXPECT_EQ((EntryIDs{portA, memberA, set, media, portB, memberB, set}), rest(iterator));
}

TEST_F(WalkTest, ManyWalksAtOnceDoNotDisturbEachOther) {
  const auto first = walkFrom(top, Down);
  next(first);
  next(first);
  const auto second = walkFrom(top, Down);
  EXPECT_EQ(7U, rest(second).size());
  const auto third = walkFrom(set, Up);
  EXPECT_EQ(7U, rest(third).size());
  EXPECT_EQ((EntryIDs{set, media, portB, memberB, set}), rest(first));
}

TEST_F(WalkTest, EachStepIsOneReferenceMore) {
  const auto iterator = walkFrom(top, Down);
  const io_object_t entry = IOIteratorNext(iterator.get());
  EXPECT_EQ(1U, MemoryRegistry::references(portA));
  IOObjectRelease(entry);
  EXPECT_EQ(0U, MemoryRegistry::references(portA));
}

TEST_F(WalkTest, AnUnknownPlaneIsABadArgument) {
  for (const char* plane : {"IODeviceTree", "", "IOServic", "IOServices"}) {
    io_iterator_t iterator = 1;
    EXPECT_EQ(kIOReturnBadArgument,
              IORegistryEntryCreateIterator(handleOf(top).get(), plane, Down, &iterator))
        << plane;
    EXPECT_EQ(0U, iterator) << plane;
    iterator = 1;
    EXPECT_EQ(kIOReturnBadArgument,
              IORegistryCreateIterator(kIOMasterPortDefault, plane, Down, &iterator))
        << plane;
    EXPECT_EQ(0U, iterator) << plane;
  }
}

TEST_F(WalkTest, AnUnknownPlaneHasNoChildrenAndSaysSoWithSuccessAndNoIterator) {
  io_iterator_t iterator = 1;
  EXPECT_EQ(kIOReturnSuccess,
            IORegistryEntryGetChildIterator(handleOf(top).get(), "IODeviceTree", &iterator));
  EXPECT_EQ(0U, iterator);
}

TEST_F(WalkTest, AnEntryWithoutChildrenHasAnEmptyIteratorOfThem) {
  const auto iterator = childrenOf(media);
  EXPECT_NE(0U, iterator.get());
  EXPECT_EQ(EntryIDs(), rest(iterator));
}

TEST_F(WalkTest, AnIteratorThatIsNoneGivesNothing) {
  const auto entry = handleOf(top);
  for (const io_object_t none : {0U, entry.get(), 0xFFFFFFFFU}) {
    EXPECT_EQ(0U, IOIteratorNext(none));
    EXPECT_FALSE(IOIteratorIsValid(none));
    IOIteratorReset(none);
  }
}

TEST_F(WalkTest, AnIteratorAsStartIsABadArgument) {
  const auto walk = walkFrom(top, Down);
  io_iterator_t iterator = 1;
  EXPECT_EQ(kIOReturnBadArgument,
            IORegistryEntryCreateIterator(walk.get(), "IOService", Down, &iterator));
  EXPECT_EQ(0U, iterator);
  EXPECT_EQ(kIOReturnBadArgument,
            IORegistryEntryGetChildIterator(walk.get(), "IOService", &iterator));
}

TEST_F(WalkTest, GoesDeeperThanItHadRoomForAtFirst) {
  EntryIDs chain;
  for (EntryID at = media; chain.size() < 500;)
    chain.push_back(at = add(at, "Link"));
  EXPECT_EQ(chain, rest(walkFrom(media, Down)));
}

}  // namespace
