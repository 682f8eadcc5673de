#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::attach;
using MemoryRegistry::detach;
using MemoryRegistry::terminate;

// top: a (a1 (a11), a2), b (b1), c
class WalkChangeTest : public RegistryFixture {
 protected:
  const EntryID top = add(root, "Top");
  const EntryID a = add(top, "A");
  const EntryID a1 = add(a, "A1");
  const EntryID a11 = add(a1, "A11");
  const EntryID a2 = add(a, "A2");
  const EntryID b = add(top, "B");
  const EntryID b1 = add(b, "B1");
  const EntryID c = add(top, "C");

  Handle walkTo(EntryID entry) {
    auto iterator = walkFrom(top, Down);
    while (next(iterator) != entry) {
    }
    return iterator;
  }
  static bool isValid(const Handle& iterator) { return IOIteratorIsValid(iterator.get()) != 0; }
};

TEST_F(WalkChangeTest, AnUndisturbedWalkIsValidToTheEnd) {
  const auto iterator = walkFrom(top, Down);
  EXPECT_TRUE(isValid(iterator));
  EXPECT_EQ(7U, rest(iterator).size());
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, AChangeUnderAnOpenLevelEndsItAndTheOuterLevelsGoOnFlat) {
  const auto iterator = walkTo(a1);
  next(iterator);  // A11: the levels of top, A and A1 are open
  add(a, "A3");
  EXPECT_EQ((EntryIDs{b, c}), rest(iterator));  // without A2, A3, and B1
  EXPECT_FALSE(isValid(iterator));
  EXPECT_EQ(0U, next(iterator));
}

TEST_F(WalkChangeTest, NewLevelsAreEnteredUntilTheChangedOneIsAsked) {
  const auto iterator = walkTo(a1);
  add(top, "D");
  // What lies below the changed level is walked to its end, A11 included.
  EXPECT_EQ((EntryIDs{a11, a2}), rest(iterator));
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, AChangeUnderAnOpenLevelIsKnownBeforeTheNextStep) {
  const auto iterator = walkTo(a1);
  EXPECT_TRUE(isValid(iterator));
  add(b, "B2");  // not yet open
  EXPECT_TRUE(isValid(iterator));
  add(top, "D");
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, AChangeUnderTheOutermostLevelEndsTheWalk) {
  const auto iterator = walkTo(a2);
  terminate(c);
  EXPECT_EQ(EntryIDs(), rest(iterator));
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, AChangeTakenBackIsAChangeAllTheSame) {
  const auto iterator = walkTo(a2);
  detach(c, top);
  attach(c, top);  // the links read as before
  EXPECT_EQ(EntryIDs(), rest(iterator));
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, ChangesInPartsNotYetOpenedAreSeen) {
  const auto iterator = walkTo(a2);
  const EntryID b2 = add(b, "B2");
  EXPECT_EQ((EntryIDs{b, b1, b2, c}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, AnEntryJustReturnedIsNotOpenedYet) {
  const auto iterator = walkTo(b);
  const EntryID b2 = add(b, "B2");
  EXPECT_EQ((EntryIDs{b1, b2, c}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, ChangesInPartsAlreadyLeftAreNoticedByNobody) {
  const auto iterator = walkTo(b);
  add(a1, "A12");
  detach(a2, a);
  EXPECT_EQ((EntryIDs{b1, c}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, AnEntryTerminatedBeforeItIsEnteredIsPassedOver) {
  const auto iterator = walkTo(b);
  const auto held = handleOf(b);
  terminate(b);
  EXPECT_EQ(EntryIDs(), rest(iterator));
  EXPECT_FALSE(isValid(iterator));  // the level that it was on has changed
}

TEST_F(WalkChangeTest, AnOpenLevelWhoseEntryIsTerminatedEnds) {
  const auto iterator = walkTo(a11);
  terminate(a1);
  EXPECT_EQ((EntryIDs{b, c}), rest(iterator));
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, ALeafThatGainsChildrenBeforeTheNextStepIsEntered) {
  const auto iterator = walkTo(a11);
  const EntryID late = add(a11, "Late");
  EXPECT_EQ(late, next(iterator));
}

TEST_F(WalkChangeTest, ResetMakesItValidAndStartsOver) {
  const auto iterator = walkTo(a1);
  const EntryID d = add(top, "D");
  rest(iterator);
  ASSERT_FALSE(isValid(iterator));
  IOIteratorReset(iterator.get());
  EXPECT_TRUE(isValid(iterator));
  EXPECT_EQ((EntryIDs{a, a1, a11, a2, b, b1, c, d}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, PropertiesNamesAndStatesDisturbNoWalk) {
  const auto iterator = walkTo(a1);
  MemoryRegistry::setProperty(a, "Key", 1);
  MemoryRegistry::setName(top, "Other");
  MemoryRegistry::setLocation(a1, "7");
  MemoryRegistry::setState(b, MemoryRegistry::Inactive);
  EXPECT_EQ((EntryIDs{a11, a2, b, b1, c}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, ANewEntryInTheSlotOfAnOldOneIsEntered) {
  const auto iterator = walkTo(a2);
  terminate(a2);  // its slot is free, and marked as met
  const EntryID b2 = add(b, "B2");
  const EntryID b21 = add(b2, "B21");
  EXPECT_EQ((EntryIDs{b, c}), rest(iterator));  // A has changed: the rest is flat
  IOIteratorReset(iterator.get());
  EXPECT_EQ((EntryIDs{a, a1, a11, b, b1, b2, b21, c}), rest(iterator));
}

TEST_F(WalkChangeTest, ANewEntryInTheSlotOfOneMetBeforeIsEnteredByTheSameWalk) {
  const auto iterator = walkTo(b);  // A and everything beneath it are met and left
  terminate(a11);
  const EntryID b2 = add(b, "B2");  // takes the slot of A11
  const EntryID b21 = add(b2, "B21");
  EXPECT_EQ((EntryIDs{b1, b2, b21, c}), rest(iterator));
}

TEST_F(WalkChangeTest, HoweverManyEntriesComeToBeUnderAWalkEachIsMetOnce) {
  const auto iterator = walkTo(b);
  EntryIDs expected{b1};
  for (int i = 0; i < 2000; ++i)
    expected.push_back(add(b, "More"));
  expected.push_back(c);
  EXPECT_EQ(expected, rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, AFlatWalkEndsWithTheFirstChangeOfItsLinks) {
  const auto iterator = walkFrom(top, 0);
  EXPECT_EQ(a, next(iterator));
  add(a, "A3");
  EXPECT_EQ(b, next(iterator));
  add(top, "D");
  EXPECT_EQ(0U, next(iterator));
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, UpwardsOnlyTheLinksToParentsCount) {
  const auto iterator = walkFrom(a11, Up);
  EXPECT_EQ(a1, next(iterator));
  EXPECT_EQ(a, next(iterator));
  add(a11, "Below");
  EXPECT_EQ(top, next(iterator));
  attach(a11, c);
  EXPECT_EQ(EntryIDs{root}, rest(iterator));
  EXPECT_FALSE(isValid(iterator));
}

TEST_F(WalkChangeTest, UpwardsAParentThatIsTerminatedIsAChangeOfThoseThatItLeavesBehind) {
  attach(a11, c);
  const auto iterator = walkFrom(a11, Up);
  EXPECT_EQ(a1, next(iterator));
  EXPECT_EQ(a, next(iterator));
  terminate(a1);                                     // A11 lives on beneath C
  EXPECT_EQ((EntryIDs{top, root}), rest(iterator));  // above A; C is not asked for any more
  EXPECT_FALSE(isValid(iterator));
  IOIteratorReset(iterator.get());
  EXPECT_EQ((EntryIDs{c, top, root}), rest(iterator));
}

TEST_F(WalkChangeTest, AWalkWhoseStartIsTerminatedIsEmptyAfterReset) {
  const auto iterator = walkFrom(a, Down);
  terminate(a);
  EXPECT_EQ(0U, next(iterator));
  IOIteratorReset(iterator.get());
  EXPECT_EQ(0U, next(iterator));
  EXPECT_TRUE(isValid(iterator));
}

TEST_F(WalkChangeTest, ASnapshotKeepsItsChildrenAndStaysValid) {
  const auto iterator = childrenOf(top);
  detach(b, top);
  add(top, "D");
  EXPECT_EQ((EntryIDs{a, b, c}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
  IOIteratorReset(iterator.get());
  EXPECT_EQ((EntryIDs{a, b, c}), rest(iterator));
}

TEST_F(WalkChangeTest, ASnapshotPassesOverWhatWasTerminated) {
  const auto iterator = childrenOf(top);
  terminate(b);
  for (const char* name : {"InTheSlotOfB1", "InTheSlotOfB"})
    add(c, name);
  EXPECT_EQ((EntryIDs{a, c}), rest(iterator));
  EXPECT_TRUE(isValid(iterator));
}

}  // namespace
