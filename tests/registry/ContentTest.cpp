#include <algorithm>
#include <stdexcept>

#include "platform/registry/IOKitUtilities.h"
#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::contains;
using MemoryRegistry::RegistryContent;
using MemoryRegistry::replaceContent;

// Content as a list of rows: an ID, and the places of its parents in the order of attachment.
struct Row {
  MemoryRegistry::EntryID id;
  std::vector<std::size_t> parents;
};

RegistryContent contentOf(const std::vector<Row>& rows) {
  RegistryContent content;
  for (const Row& row : rows) {
    RegistryContent::Entry entry;
    entry.id = row.id;
    entry.description.className = "IOService";
    entry.description.name = "E" + std::to_string(row.id);
    entry.parents = row.parents;
    content.entries.push_back(std::move(entry));
  }
  for (std::size_t place = 0; place < rows.size(); ++place) {
    for (const std::size_t parent : rows[place].parents) {
      if (parent < rows.size()) content.entries[parent].children.push_back(place);
    }
  }
  return content;
}

class ContentTest : public RegistryFixture {
 protected:
  void SetUp() override { replaceContent(first); }

  const RegistryContent first =
      contentOf({{10, {}}, {20, {0}}, {30, {1}}, {40, {1}}, {50, {2, 3}}});
};

TEST_F(ContentTest, TheRegistryIsExactlyTheContent) {
  EXPECT_EQ(10U, MemoryRegistry::root());
  EXPECT_EQ(5U, MemoryRegistry::entryCount());
  EXPECT_FALSE(contains(root));
  EXPECT_EQ((EntryIDs{30, 40}), MemoryRegistry::children(20));
  EXPECT_EQ((EntryIDs{30, 40}), MemoryRegistry::parents(50));
  EXPECT_EQ("IOService:/E30/E50", MemoryRegistry::path(50));
}

TEST_F(ContentTest, ChildrenAndParentsKeepTheOrderGiven) {
  auto content = first;
  std::reverse(content.entries[1].children.begin(), content.entries[1].children.end());
  std::reverse(content.entries[4].parents.begin(), content.entries[4].parents.end());
  replaceContent(content);
  EXPECT_EQ((EntryIDs{40, 30}), MemoryRegistry::children(20));
  EXPECT_EQ((EntryIDs{40, 30}), MemoryRegistry::parents(50));
}

TEST_F(ContentTest, EntriesKeptKeepTheirHandlesAndOthersAreTerminated) {
  const auto kept = handleOf(30);
  const auto gone = handleOf(40);
  replaceContent(contentOf({{10, {}}, {20, {0}}, {30, {1}}, {60, {2}}}));
  EXPECT_EQ(30U, MemoryRegistry::entryOf(kept.get()));
  EXPECT_EQ(0U, MemoryRegistry::entryOf(gone.get()));
  EXPECT_EQ(1U, MemoryRegistry::references(40));
  EXPECT_EQ(kept.get(), handleOf(30).get());
  EXPECT_TRUE(contains(60));
  EXPECT_FALSE(contains(50));
}

TEST_F(ContentTest, AnIDThatVanishesAndComesBackIsANewEntry) {
  auto before = handleOf(40);
  replaceContent(contentOf({{10, {}}, {20, {0}}}));
  replaceContent(first);
  const auto after = handleOf(40);
  EXPECT_NE(before.get(), after.get());
  EXPECT_EQ(0U, MemoryRegistry::entryOf(before.get()));
  EXPECT_EQ(40U, MemoryRegistry::entryOf(after.get()));
  EXPECT_EQ(2U, MemoryRegistry::references(40));
}

TEST_F(ContentTest, TheAccountsTellEntriesOfOneIDApartTheEndedOnesFirst) {
  std::vector<io_object_t> held;
  for (int life = 1; life <= 3; ++life) {
    for (int reference = 0; reference < life; ++reference) {
      held.push_back(MemoryRegistry::handle(40));
    }
    if (life == 3) break;
    replaceContent(contentOf({{10, {}}, {20, {0}}}));
    replaceContent(first);
  }
  EXPECT_EQ((std::vector<MemoryRegistry::KeptEntry>{{40, 1}, {40, 2}, {40, 3}}),
            MemoryRegistry::accounts().entries);
  EXPECT_EQ(6U, MemoryRegistry::references(40));
  for (const io_object_t handle : held) {
    IOObjectRelease(handle);
  }
}

TEST_F(ContentTest, NamesClassesStatesAndPropertiesAreReplaced) {
  auto content = first;
  auto& description = content.entries[4].description;
  description.className = "IOMedia";
  description.name = "Media";
  description.location = "2";
  description.properties = {{"Key", "new"}};
  MemoryRegistry::setProperty(50, "Old", "old");
  const auto handle = handleOf(50);
  replaceContent(content);
  EXPECT_EQ("IOService:/E30/Media@2", MemoryRegistry::path(50));
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOMedia"));
  EXPECT_EQ("new", IOKitUtilities::GetServiceStringProperty(handle.get(), "Key"));
  EXPECT_FALSE(propertyOf(50, "Old"));
  const auto provider = string("IOMedia");
  const auto found = Handle::adopt(IOServiceGetMatchingService(
      kIOMasterPortDefault, dictionary({{CFSTR("IOProviderClass"), provider.get()}}).release()));
  EXPECT_EQ(50U, MemoryRegistry::entryOf(found.get()));
}

TEST_F(ContentTest, AWalkGoesOnWhereItsLinksStayAsTheyWere) {
  const auto iterator = walkFrom(20, Down);
  EXPECT_EQ(30U, next(iterator));
  // A new branch beside the walk; 20, 30 and 40 keep their children.
  replaceContent(contentOf({{10, {}}, {20, {0}}, {30, {1}}, {40, {1}}, {50, {2, 3}}, {60, {0}}}));
  EXPECT_EQ((EntryIDs{50, 40, 50}), rest(iterator));
  EXPECT_TRUE(IOIteratorIsValid(iterator.get()));
}

TEST_F(ContentTest, AWalkEndsWhereItsLinksChange) {
  const auto iterator = walkFrom(20, Down);
  EXPECT_EQ(30U, next(iterator));
  EXPECT_EQ(50U, next(iterator));
  replaceContent(contentOf({{10, {}}, {20, {0}}, {30, {1}}, {40, {1}}, {60, {2}}}));
  EXPECT_EQ(EntryIDs{40}, rest(iterator));
  EXPECT_FALSE(IOIteratorIsValid(iterator.get()));
}

TEST_F(ContentTest, EntriesMayComeInAnyOrderOfID) {
  replaceContent(contentOf({{90, {}}, {5, {0}}, {70, {1}}, {6, {1}}}));
  EXPECT_EQ((EntryIDs{70, 6}), MemoryRegistry::children(5));
  EXPECT_EQ(90U, MemoryRegistry::root());
}

TEST_F(ContentTest, IDsAddedLaterAreAboveAllThatWere) {
  const EntryID later = add(20, "Later");
  EXPECT_LT(root, later);
  replaceContent(contentOf({{10, {}}, {UINT64_MAX, {0}}, {UINT64_MAX - 1, {0}}}));
  const EntryID another = add(10, "Another");
  EXPECT_EQ(1U, another) << "after the very last one it begins anew";
  EXPECT_TRUE(contains(UINT64_MAX));
  EXPECT_EQ(4U, MemoryRegistry::entryCount());
}

TEST_F(ContentTest, TheVeryLastIDAloneDoesNotMakeThemBeginAnew) {
  const EntryID later = add(20, "Later");
  replaceContent(contentOf({{10, {}}, {UINT64_MAX, {0}}}));
  EXPECT_EQ(later + 1, add(10, "Another"));
}

TEST_F(ContentTest, TheIDOfAnEntryThatIsGoneIsNotGivenAgain) {
  const EntryID highest = root + 1000;
  replaceContent(contentOf({{10, {}}, {highest, {0}}}));
  MemoryRegistry::terminate(highest);
  EXPECT_EQ(highest + 1, add(10, "Later"));
}

TEST_F(ContentTest, WhatIsNoContentThrowsAndChangesNothing) {
  const auto broken = [this](auto change) {
    RegistryContent content = first;
    change(content.entries);
    return content;
  };
  const struct {
    const char* reason;
    RegistryContent content;
  } rows[] = {
      {"content without a root", {}},
      {"an entry without an ID", broken([](auto& entries) { entries[4].id = 0; })},
      {"the ID 20 twice", broken([](auto& entries) { entries[4].id = 20; })},
      {"an entry without a class",
       broken([](auto& entries) { entries[4].description.className.clear(); })},
      {"an inheritance that does not end in the class itself",
       broken([](auto& entries) { entries[4].description.inheritance = {"IORegistryEntry"}; })},
      {"a root with a parent", contentOf({{10, {1}}, {20, {0}}})},
      {"an entry without a parent", contentOf({{10, {}}, {20, {}}})},
      {"a link to a place outside the content", contentOf({{10, {}}, {20, {7}}})},
      {"a link to a place outside the content",
       broken([](auto& entries) { entries[0].children.push_back(9); })},
      {"a second link between the same two entries", contentOf({{10, {}}, {20, {0, 0}}})},
      {"children and parents that do not agree",
       broken([](auto& entries) { entries[0].children.push_back(4); })},
      {"children and parents that do not agree",
       broken([](auto& entries) { entries[4].parents.push_back(0); })},
      {"an entry beneath itself", contentOf({{10, {}}, {20, {0, 2}}, {30, {1}}})},
      {"an entry beneath itself", contentOf({{10, {}}, {20, {2}}, {30, {1}}})},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.reason, refusal([&] { replaceContent(row.content); }));
    EXPECT_EQ(5U, MemoryRegistry::entryCount()) << row.reason;
    EXPECT_EQ("IOService:/E30/E50", MemoryRegistry::path(50)) << row.reason;
  }
}

}  // namespace
