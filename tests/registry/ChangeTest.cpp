#include <stdexcept>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::attach;
using MemoryRegistry::children;
using MemoryRegistry::contains;
using MemoryRegistry::detach;
using MemoryRegistry::entryCount;
using MemoryRegistry::parents;
using MemoryRegistry::terminate;

class ChangeTest : public RegistryFixture {
 protected:
  const EntryID top = add(root, "Top");
  const EntryID a = add(top, "A");
  const EntryID b = add(top, "B");
};

TEST_F(ChangeTest, ANewRegistryHasARootAndNothingElse) {
  MemoryRegistry::reset();
  EXPECT_EQ(1U, entryCount());
  EXPECT_TRUE(contains(root));
  EXPECT_EQ(EntryIDs(), children(root));
  EXPECT_EQ(EntryIDs(), parents(root));
}

TEST_F(ChangeTest, AnEntryIsAddedAsTheLastChild) {
  const EntryID c = add(top, "C");
  EXPECT_EQ((EntryIDs{a, b, c}), children(top));
  EXPECT_EQ(EntryIDs{top}, parents(c));
}

TEST_F(ChangeTest, AnEntryWithoutANameHasItsClasss) {
  const EntryID media = add(top, "", "IOMedia");
  EXPECT_EQ("IOService:/IOMedia", MemoryRegistry::path(media));
  MemoryRegistry::setName(media, "Other");
  EXPECT_EQ("IOService:/Other", MemoryRegistry::path(media));
}

TEST_F(ChangeTest, WhatIsNotAllowedThrowsAndChangesNothing) {
  const EntryID below = add(a, "Below");
  EXPECT_THROW(attach(a, top), std::invalid_argument);
  EXPECT_THROW(attach(a, a), std::invalid_argument);
  EXPECT_THROW(attach(a, below), std::invalid_argument);
  EXPECT_THROW(attach(top, below), std::invalid_argument);
  EXPECT_THROW(attach(root, below), std::invalid_argument);
  EXPECT_THROW(detach(a, b), std::invalid_argument);
  EXPECT_THROW(terminate(root), std::invalid_argument);
  EXPECT_EQ((EntryIDs{a, b}), children(top));
  EXPECT_EQ(EntryIDs{top}, parents(a));
  EXPECT_EQ(EntryIDs{below}, children(a));
  EXPECT_EQ(5U, entryCount());
}

TEST_F(ChangeTest, AnUnknownIDThrowsEverywhere) {
  constexpr EntryID unknown = 77;
  EXPECT_THROW(add(unknown, "X"), std::invalid_argument);
  EXPECT_THROW(attach(unknown, top), std::invalid_argument);
  EXPECT_THROW(attach(a, unknown), std::invalid_argument);
  EXPECT_THROW(detach(a, unknown), std::invalid_argument);
  EXPECT_THROW(terminate(unknown), std::invalid_argument);
  EXPECT_THROW(MemoryRegistry::setProperty(unknown, "k", 1), std::invalid_argument);
  EXPECT_THROW(MemoryRegistry::removeProperty(unknown, "k"), std::invalid_argument);
  EXPECT_THROW(MemoryRegistry::setName(unknown, "n"), std::invalid_argument);
  EXPECT_THROW(MemoryRegistry::setLocation(unknown, "1"), std::invalid_argument);
  EXPECT_THROW(MemoryRegistry::setState(unknown, 0), std::invalid_argument);
  EXPECT_THROW(children(unknown), std::invalid_argument);
  EXPECT_THROW(parents(unknown), std::invalid_argument);
  EXPECT_THROW(MemoryRegistry::path(unknown), std::invalid_argument);
  EXPECT_FALSE(contains(unknown));
}

TEST_F(ChangeTest, ADetachedEntryLivesOnAndCanBeAttachedAgain) {
  const auto handle = handleOf(a);
  detach(a, top);
  EXPECT_TRUE(contains(a));
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOService"));
  EXPECT_EQ(EntryIDs(), parents(a));
  attach(a, b);
  EXPECT_EQ("IOService:/B/A", MemoryRegistry::path(a));
}

TEST_F(ChangeTest, TerminationTakesWhatNoOtherParentHolds) {
  const EntryID onlyA = add(a, "OnlyA");
  const EntryID shared = add(onlyA, "Shared");
  const EntryID media = add(shared, "Media");
  attach(shared, b);
  const auto handle = handleOf(shared);
  terminate(a);
  EXPECT_FALSE(contains(a));
  EXPECT_FALSE(contains(onlyA));
  EXPECT_TRUE(contains(shared));
  EXPECT_TRUE(contains(media));
  EXPECT_EQ(EntryIDs{b}, parents(shared));
  EXPECT_EQ(EntryIDs{b}, children(top));
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOService"));
  terminate(b);
  EXPECT_FALSE(contains(media));
  EXPECT_FALSE(IOObjectConformsTo(handle.get(), "IOService"));
}

TEST_F(ChangeTest, TerminationTakesWhatHangsOnlyBelowTheTerminatedByTwoWays) {
  const EntryID left = add(a, "Left");
  const EntryID right = add(a, "Right");
  const EntryID both = add(left, "Both");
  attach(both, right);
  terminate(a);
  EXPECT_FALSE(contains(both));
  EXPECT_EQ(3U, entryCount());
}

TEST_F(ChangeTest, AnAncestorFarAwayIsFound) {
  EntryID at = a;
  for (int depth = 0; depth < 50; ++depth) {
    const EntryID below = add(at, "Left");
    const EntryID other = add(at, "Right");
    const EntryID joint = add(below, "Joint");
    attach(joint, other);
    at = joint;
  }
  EXPECT_THROW(attach(a, at), std::invalid_argument);
  EXPECT_NO_THROW(attach(at, b));
}

}  // namespace
