// Every change of the registry, failing at every one of its allocations: it is made whole or not at
// all. A program of its own, because it replaces operator new.

#include "tests/registry/RegistryFixture.h"
#include "tests/support/FailingMemory.h"

namespace {

using MemoryRegistry::RegistryContent;
using TestSupport::failEachAllocation;

class RegistryMemoryTest : public RegistryFixture {
 protected:
  RegistryMemoryTest() : top(add(root, "Top")) {}

  // Makes the change, and after each attempt that fails looks whether all is as before.
  template <class Change>
  void expectWholeOrNotAtAll(const Change& change, EntryID watched) {
    const EntryIDs children = MemoryRegistry::children(watched);
    const EntryIDs parents = MemoryRegistry::parents(watched);
    const std::size_t count = MemoryRegistry::entryCount();
    _failures += failEachAllocation(change, [&](bool threw) {
      EXPECT_TRUE(threw);
      ASSERT_EQ(count, MemoryRegistry::entryCount());
      ASSERT_EQ(children, MemoryRegistry::children(watched));
      ASSERT_EQ(parents, MemoryRegistry::parents(watched));
    });
  }

  std::size_t failures() const { return _failures; }

  const EntryID top;

 private:
  std::size_t _failures = 0;
};

// Often enough for everything that grows to grow several times.
TEST_F(RegistryMemoryTest, AnEntryIsAddedWholeOrNotAtAll) {
  for (std::size_t i = 0; i < 70; ++i) {
    expectWholeOrNotAtAll([this] { add(top, "Child"); }, top);
    ASSERT_EQ(i + 1, MemoryRegistry::children(top).size());
  }
  EXPECT_LT(70U, failures());
}

TEST_F(RegistryMemoryTest, ALinkIsMadeWholeOrNotAtAll) {
  const EntryID child = add(top, "Child");
  for (std::size_t i = 0; i < 20; ++i) {
    const EntryID parent = add(root, "Parent");
    expectWholeOrNotAtAll([&] { MemoryRegistry::attach(child, parent); }, child);
    ASSERT_EQ(i + 2, MemoryRegistry::parents(child).size());
  }
  EXPECT_LT(0U, failures());
}

TEST_F(RegistryMemoryTest, APropertyIsStoredWholeOrNotAtAll) {
  for (int i = 0; i < 20; ++i) {
    const std::string key = "a key that no one has used " + std::to_string(i);
    expectWholeOrNotAtAll([&] { MemoryRegistry::setProperty(top, key, "a text of some length"); },
                          top);
    ASSERT_TRUE(propertyOf(top, key));
  }
  EXPECT_LT(20U, failures());
}

TEST_F(RegistryMemoryTest, AnEntryIsTerminatedWholeOrNotAtAll) {
  for (int i = 0; i < 5; ++i) {
    const EntryID doomed = add(top, "Doomed");
    add(add(doomed, "Below"), "BelowThat");
    const Handle kept = handleOf(doomed);
    expectWholeOrNotAtAll([&] { MemoryRegistry::terminate(doomed); }, top);
    ASSERT_FALSE(MemoryRegistry::contains(doomed));
  }
  EXPECT_LT(0U, failures());
}

TEST_F(RegistryMemoryTest, ContentIsReplacedWholeOrNotAtAll) {
  for (std::size_t size = 2; size < 200; size *= 3) {
    RegistryContent content;
    content.entries.resize(size);
    for (std::size_t place = 0; place < size; ++place) {
      content.entries[place].id = 1000 * size + place + 1;
      content.entries[place].description.className = "IOService";
      if (place == 0) continue;
      content.entries[place].parents.push_back(0);
      content.entries[0].children.push_back(place);
    }
    const EntryID before = MemoryRegistry::root();
    expectWholeOrNotAtAll(
        [&] {
          RegistryContent copy = content;
          MemoryRegistry::replaceContent(std::move(copy));
        },
        before);
    ASSERT_EQ(size, MemoryRegistry::entryCount());
  }
  EXPECT_LT(100U, failures());
}

TEST_F(RegistryMemoryTest, AWalkIsOpenedWholeOrNotAtAll) {
  EntryID at = top;
  for (int depth = 0; depth < 100; ++depth)
    at = add(at, "Deep");
  const Handle entry = handleOf(top);
  std::vector<Handle> walks;
  walks.reserve(40);
  for (int i = 0; i < 40; ++i) {
    Handle walk;
    failEachAllocation(
        [&] { IORegistryEntryCreateIterator(entry.get(), "IOService", Down, walk.receive()); },
        [&](bool) { ASSERT_EQ(walks.size(), MemoryRegistry::accounts().iterators); });
    ASSERT_TRUE(walk);
    walks.push_back(std::move(walk));
    ASSERT_EQ(100U, rest(walks.back()).size());
  }
}

TEST_F(RegistryMemoryTest, IteratorsThatAreGivenBackAreUsedAgain) {
  add(top, "Child");
  const Handle entry = handleOf(top);
  const auto openAndClose = [&entry] {
    Handle iterator;
    IORegistryEntryGetChildIterator(entry.get(), "IOService", iterator.receive());
    ASSERT_TRUE(iterator);
    IORegistryEntryCreateIterator(entry.get(), "IOService", Down, iterator.receive());
    ASSERT_TRUE(iterator);
  };
  openAndClose();
  const std::uint64_t made = TestSupport::madeAllocations();
  for (int i = 0; i < 10; ++i)
    openAndClose();
  EXPECT_EQ(made, TestSupport::madeAllocations());
}

}  // namespace
