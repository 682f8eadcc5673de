#include <set>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::Accounts;
using MemoryRegistry::KeptEntry;
using MemoryRegistry::references;
using MemoryRegistry::terminate;

class HandleTest : public RegistryFixture {
 protected:
  const EntryID top = add(root, "Top");
  const EntryID disk = add(top, "Disk");
};

TEST_F(HandleTest, TheSameEntryHasTheSameNumberAndOneReferenceMore) {
  const auto first = handleOf(disk);
  const auto second = handleOf(disk);
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(2U, references(disk));
  EXPECT_EQ(disk, MemoryRegistry::entryOf(first.get()));
}

TEST_F(HandleTest, DifferentObjectsHaveDifferentNumbersAndNoneIsZero) {
  std::vector<Handle> held;
  std::set<io_object_t> numbers;
  for (const EntryID entry : {root, top, disk}) {
    held.push_back(handleOf(entry));
    numbers.insert(held.back().get());
    held.push_back(walkFrom(entry, Down));
    numbers.insert(held.back().get());
  }
  EXPECT_EQ(6U, numbers.size());
  EXPECT_EQ(0U, numbers.count(0));
}

TEST_F(HandleTest, RetainAndReleaseCountReferences) {
  const auto handle = handleOf(disk);
  EXPECT_EQ(KERN_SUCCESS, IOObjectRetain(handle.get()));
  EXPECT_EQ(2U, references(disk));
  EXPECT_EQ(KERN_SUCCESS, IOObjectRelease(handle.get()));
  EXPECT_EQ(1U, references(disk));
}

TEST_F(HandleTest, ReferencesAreCountedWithoutALimit) {
  const auto handle = handleOf(disk);
  for (int count = 0; count < 70000; ++count)
    IOObjectRetain(handle.get());
  EXPECT_EQ(70001U, references(disk));
  for (int count = 0; count < 70000; ++count)
    IOObjectRelease(handle.get());
  EXPECT_EQ(1U, references(disk));
}

TEST_F(HandleTest, NoneCanBeRetainedAndReleasedWithoutEffect) {
  EXPECT_EQ(KERN_SUCCESS, IOObjectRetain(0));
  EXPECT_EQ(KERN_SUCCESS, IOObjectRelease(0));
}

TEST_F(HandleTest, AnUnknownNumberCanBeNeitherRetainedNorReleased) {
  auto handle = handleOf(disk);
  const io_object_t number = handle.get();
  handle.reset();
  for (const io_object_t unknown : {number, 0x7FFFFFFFU, 5U}) {
    EXPECT_EQ(KERN_INVALID_NAME, IOObjectRelease(unknown)) << unknown;
    EXPECT_EQ(KERN_INVALID_NAME, IOObjectRetain(unknown)) << unknown;
  }
  EXPECT_EQ(0U, references(disk));
}

TEST_F(HandleTest, ATerminatedEntryIsADeadNameUntilItsLastReference) {
  auto handle = handleOf(disk);
  terminate(disk);
  EXPECT_FALSE(IOObjectConformsTo(handle.get(), "IOService"));
  EXPECT_EQ(KERN_SUCCESS, IOObjectRetain(handle.get()));
  EXPECT_EQ(2U, references(disk));
  EXPECT_EQ((std::vector<KeptEntry>{{disk, 2}}), MemoryRegistry::accounts().entries);
  EXPECT_EQ(KERN_SUCCESS, IOObjectRelease(handle.get()));
  const io_object_t number = handle.get();
  handle.reset();
  EXPECT_EQ(KERN_INVALID_NAME, IOObjectRelease(number));
  EXPECT_EQ(0U, references(disk));
}

TEST_F(HandleTest, ANumberGivenBackForGoodIsNotGivenToTheNextObject) {
  auto handle = handleOf(disk);
  const io_object_t number = handle.get();
  terminate(disk);
  handle.reset();
  const auto successor = handleOf(add(top, "Successor"));
  EXPECT_NE(number, successor.get());
  EXPECT_EQ(0U, MemoryRegistry::entryOf(number));
}

TEST_F(HandleTest, NumbersStayApartOverManyGenerations) {
  io_object_t before = 0;
  for (int generation = 0; generation < 600; ++generation) {
    const EntryID entry = add(top, "Brief");
    const auto handle = handleOf(entry);
    EXPECT_NE(0U, handle.get());
    EXPECT_NE(before, handle.get());
    EXPECT_EQ(entry, MemoryRegistry::entryOf(handle.get()));
    before = handle.get();
    terminate(entry);
  }
}

TEST_F(HandleTest, IteratorsAreReferenceCountedToo) {
  const auto walk = walkFrom(root, Down);
  IOObjectRetain(walk.get());
  IOObjectRelease(walk.get());
  EXPECT_EQ(top, next(walk));
  EXPECT_EQ(1U, MemoryRegistry::accounts().iterators);
}

TEST_F(HandleTest, AReleasedIteratorGivesNothing) {
  auto walk = walkFrom(root, Down);
  const io_object_t number = walk.get();
  walk.reset();
  EXPECT_EQ(0U, IOIteratorNext(number));
  EXPECT_FALSE(IOIteratorIsValid(number));
  EXPECT_EQ(0U, MemoryRegistry::accounts().iterators);
}

TEST_F(HandleTest, WhatIsKeptIsTheSameWhenBothEntryAndReferencesAre) {
  EXPECT_TRUE((KeptEntry{1, 2}) == (KeptEntry{1, 2}));
  EXPECT_FALSE((KeptEntry{1, 2}) == (KeptEntry{1, 3}));
  EXPECT_FALSE((KeptEntry{1, 2}) == (KeptEntry{2, 2}));
}

TEST_F(HandleTest, TheAccountsListWhatIsKeptInOrderOfID) {
  const auto second = handleOf(disk);
  const auto first = handleOf(top);
  IOObjectRetain(first.get());
  const auto walk = walkFrom(root, Down);
  const auto children = childrenOf(root);
  const auto value = string("x");
  const Accounts accounts = MemoryRegistry::accounts();
  EXPECT_EQ((std::vector<KeptEntry>{{top, 2}, {disk, 1}}), accounts.entries);
  EXPECT_EQ(2U, accounts.iterators);
  EXPECT_EQ(1U, accounts.values);
  IOObjectRelease(first.get());
}

TEST_F(HandleTest, AHandleForAnEntryThatIsNotThereIsNone) {
  EXPECT_EQ(0U, MemoryRegistry::handle(12345));
  EXPECT_EQ(0U, MemoryRegistry::calls());
}

TEST_F(HandleTest, ResetKillsEveryHandleAndSettlesTheAccounts) {
  const io_object_t entry = handleOf(disk).release();
  const io_object_t walk = walkFrom(root, Down).release();
  const CFStringRef value = string("x").release();
  terminate(disk);
  MemoryRegistry::reset();
  EXPECT_TRUE(MemoryRegistry::accounts().entries.empty());
  EXPECT_EQ(0U, MemoryRegistry::accounts().iterators);
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
  EXPECT_EQ(0U, MemoryRegistry::calls());
  EXPECT_EQ(KERN_INVALID_NAME, IOObjectRelease(entry));
  EXPECT_EQ(0U, IOIteratorNext(walk));
  CFRelease(value);  // values outlive a reset, off the accounts
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

TEST_F(HandleTest, CallsAreCountedByOperation) {
  const auto walk = walkFrom(root, Down);
  rest(walk);
  IOIteratorNext(0);
  using MemoryRegistry::Operation;
  EXPECT_EQ(1U, MemoryRegistry::calls(Operation::IORegistryEntryCreateIterator));
  EXPECT_EQ(4U, MemoryRegistry::calls(Operation::IOIteratorNext));
  EXPECT_EQ(3U, MemoryRegistry::calls(Operation::IOObjectRelease));
  EXPECT_EQ(8U, MemoryRegistry::calls());
}

}  // namespace
