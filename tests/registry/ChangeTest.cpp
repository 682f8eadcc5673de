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
  EXPECT_EQ("a second link between the same two entries", refusal([&] { attach(a, top); }));
  EXPECT_EQ("an entry beneath itself, or the root beneath another", refusal([&] { attach(a, a); }));
  EXPECT_EQ("an entry beneath itself, or the root beneath another",
            refusal([&] { attach(a, below); }));
  EXPECT_EQ("an entry beneath itself, or the root beneath another",
            refusal([&] { attach(top, below); }));
  EXPECT_EQ("an entry beneath itself, or the root beneath another",
            refusal([&] { attach(root, below); }));
  EXPECT_EQ("no link between the two entries", refusal([&] { detach(a, b); }));
  EXPECT_EQ("the root can't be terminated", refusal([&] { terminate(root); }));
  EXPECT_EQ((EntryIDs{a, b}), children(top));
  EXPECT_EQ(EntryIDs{top}, parents(a));
  EXPECT_EQ(EntryIDs{below}, children(a));
  EXPECT_EQ(5U, entryCount());
}

TEST_F(ChangeTest, AnUnknownIDThrowsEverywhere) {
  constexpr EntryID unknown = 77;
  EXPECT_EQ("no entry with the ID 77", refusal([&] { add(unknown, "X"); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { attach(unknown, top); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { attach(a, unknown); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { detach(a, unknown); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { terminate(unknown); }));
  EXPECT_EQ("no entry with the ID 77",
            refusal([&] { MemoryRegistry::setProperty(unknown, "k", 1); }));
  EXPECT_EQ("no entry with the ID 77",
            refusal([&] { MemoryRegistry::removeProperty(unknown, "k"); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { MemoryRegistry::setName(unknown, "n"); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { MemoryRegistry::setLocation(unknown, "1"); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { MemoryRegistry::setState(unknown, 0); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { children(unknown); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { parents(unknown); }));
  EXPECT_EQ("no entry with the ID 77", refusal([&] { MemoryRegistry::path(unknown); }));
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
  EXPECT_EQ("an entry beneath itself, or the root beneath another",
            refusal([&] { attach(a, at); }));
  EXPECT_NO_THROW(attach(at, b));
}

}  // namespace
