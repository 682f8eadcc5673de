#include <gmock/gmock.h>

#include "tests/model/MemberFixture.h"

// The two searches for a member's entry: at first sight (findRegistryEntry) and later
// (entryFromUUID). What they share is tested with both, how they differ with each.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::failCall;
using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::Repeat;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::message;

struct Search {
  const char* name;
  io_registry_entry_t (AppleRAIDMember::*find)() const;
  std::uint64_t kept;  // references on the bridge
  const char* noBridge;
  const char* noIterator;
};
constexpr Search Searches[] = {
    {"findRegistryEntry", &AppleRAIDMember::findRegistryEntry, 0,
     "AppleRAIDMember::findRegistryEntry - couldn't find PCI Bridge registry entry",
     "AppleRAIDMember::findRegistryEntry - cannot create iterator"},
    {"entryFromUUID", &AppleRAIDMember::entryFromUUID, 1,
     "AppleRAIDMember::entryFromUUID - Cannot find back the PCI Bridge object",
     "AppleRAIDMember::entryFromUUID - couldn't create iterator on PCI Bridge"}};

class MemberSearchTest : public MemberFixture, public testing::WithParamInterface<Search> {
 protected:
  // The entry that the search answers with, whose reference is given back; 0 for none.
  EntryID find(const MemberReference& member) {
    EntryID found = 0;
    EXPECT_EQ(GetParam().kept, keptBy([&] { found = answerOf(member); }));
    return found;
  }

  // A member that was not found at its construction, which is not of interest here.
  MemberReference makeUnread(const std::string& uuid) {
    auto member = makeMember(uuid);
    log().clear();
    return member;
  }

 private:
  EntryID answerOf(const MemberReference& member) {
    const auto entry = RegistryHandle::adopt((member.get()->*GetParam().find)());
    const EntryID id = MemoryRegistry::entryOf(entry.get());
    if (id != 0) {
      EXPECT_EQ(1U, MemoryRegistry::references(id)) << "the caller's";
    }
    return id;
  }
};

INSTANTIATE_TEST_SUITE_P(Both, MemberSearchTest, testing::ValuesIn(Searches),
                         [](const auto& row) { return row.param.name; });

TEST_P(MemberSearchTest, FindsTheEntryAnywhereBeneathTheBridgeAndTheCallerOwnsIt) {
  const auto member = makeUnread("M");
  addMember(bridge(), "OTHER");
  const EntryID deep = addMember(enclosure().port(2), "M");
  EXPECT_EQ(deep, find(member));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_P(MemberSearchTest, DoesNotLookElsewhere) {
  const auto member = makeUnread("M");
  addMember(elsewhere(), "M");
  addMember(enclosure().upstreamBridge(), "M");  // above the bridge
  EXPECT_EQ(0U, find(member));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_P(MemberSearchTest, ComparesTheWholeUUIDByteByByte) {
  const auto member = makeUnread("M-1");
  for (const char* uuid : {"M-", "M-11", "m-1", " M-1", ""})
    addMember(bridge(), uuid);
  EXPECT_EQ(0U, find(member));
}

TEST_P(MemberSearchTest, TakesOnlyEntriesOfTheMemberClass) {
  const auto member = makeUnread("M");
  TestSupport::addEntry(bridge(), "IOMedia", "", "", {{"AppleRAID-MemberUUID", "M"}});
  EXPECT_EQ(0U, find(member));
  const EntryID entry = addMember(bridge(), "M");
  EXPECT_EQ(entry, find(member));
}

TEST_P(MemberSearchTest, TakesClassesDerivedFromTheMemberClass) {
  const auto member = makeUnread("M");
  MemoryRegistry::EntryDescription description;
  description.className = "ExampleMember";
  description.inheritance = {"IORegistryEntry", "IOService", "IOStorage", "AppleRAIDMember",
                             "ExampleMember"};
  description.properties = {{"AppleRAID-MemberUUID", "M"}};
  const EntryID entry = MemoryRegistry::add(bridge(), description);
  EXPECT_EQ(entry, find(member));
}

TEST_P(MemberSearchTest, TakesTheFirstOfTwoAndStopsThere) {
  const auto member = makeUnread("M");
  const EntryID first = addMember(enclosure().port(1), "M");
  const auto steps = [&] {
    const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
    EXPECT_EQ(first, find(member));
    return MemoryRegistry::calls(Operation::IOIteratorNext) - before;
  };
  const auto alone = steps();
  addMember(enclosure().port(2), "M");
  EXPECT_EQ(alone, steps());
}

TEST_P(MemberSearchTest, AnEmptyUUIDEqualsAMissingOne) {
  const auto member = makeUnread("");
  const EntryID entry = addMember(bridge(), "M");
  MemoryRegistry::removeProperty(entry, "AppleRAID-MemberUUID");
  EXPECT_EQ(entry, find(member));
}

TEST_P(MemberSearchTest, WithoutTheBridgeSaysSoAndKeepsNothing) {
  const auto member = makeUnread("M");
  addMember(bridge(), "M");
  failCall(Operation::IORegistryEntryFromPath, 1, Repeat::Once);
  EXPECT_EQ(0U, keptBy([&] { EXPECT_EQ(0U, (member.get()->*GetParam().find)()); }));
  EXPECT_THAT(log().lines(), ElementsAre(message(GetParam().noBridge)));
}

TEST_P(MemberSearchTest, WithTheBridgeGoneSaysSo) {
  const auto member = makeUnread("M");
  MemoryRegistry::terminate(bridge());
  EXPECT_EQ(0U, keptBy([&] { EXPECT_EQ(0U, (member.get()->*GetParam().find)()); }));
  EXPECT_THAT(log().lines(), ElementsAre(message(GetParam().noBridge)));
}

TEST_P(MemberSearchTest, WithoutAnIteratorSaysSoAndTreatsTheBridgeAsEver) {
  const auto member = makeUnread("M");
  addMember(bridge(), "M");
  for (const Failure failure : {Failure::Error, Failure::NullSuccess}) {
    failCall(Operation::IORegistryEntryCreateIterator, 1, Repeat::Once, failure);
    EXPECT_EQ(0U, find(member));
    EXPECT_THAT(log().take(), ElementsAre(message(GetParam().noIterator)));
  }
}

TEST_P(MemberSearchTest, AnEntryThatIsNotFoundIsNotLogged) {
  const auto member = makeUnread("M");
  EXPECT_EQ(0U, find(member));
  EXPECT_THAT(log().lines(), IsEmpty());
}

using MemberThatIsASetTest = MemberFixture;
using MemberWithoutABridgeTest = MemberFixture;

TEST_F(MemberThatIsASetTest, IsFoundAtConstructionAndMissingAtRefresh) {
  const EntryID set = addSet(bridge(), {"OUTER", {}});
  MemoryRegistry::setProperty(set, "AppleRAID-MemberUUID", "M");
  MemoryRegistry::setProperty(set, "AppleRAID-MemberStatus", "Online");
  const auto member = makeMember("M");
  EXPECT_EQ(MemberOnline, member->state());
  EXPECT_EQ(MemoryRegistry::path(set), member->registryPath());
  EXPECT_THAT(log().take(), IsEmpty());

  member->refresh();
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_EQ(MemoryRegistry::path(set), member->registryPath());
  EXPECT_THAT(log().lines(),
              ElementsAre(TestSupport::debug(
                  "AppleRAIDMember::refresh - Cannot find registry entry for AppleRAID member")));
  expectLookUps(1);
}

TEST_F(MemberThatIsASetTest, IsPassedOverByTheLaterSearchInFavourOfADiskBehindIt) {
  const EntryID set = addSet(bridge(), {"OUTER", {}});
  MemoryRegistry::setProperty(set, "AppleRAID-MemberUUID", "M");
  MemoryRegistry::setProperty(set, "AppleRAID-MemberStatus", "Online");
  const EntryID disk = addMember(bridge(), "M", "Failed");
  const auto member = makeMember("M");
  EXPECT_EQ(MemoryRegistry::path(set), member->registryPath());
  member->refresh();
  EXPECT_EQ(MemberFailed, member->state());
  EXPECT_EQ(MemoryRegistry::path(disk), member->registryPath());
  expectLookUps(1);
}

TEST_F(MemberWithoutABridgeTest, ConstructionWithoutTheBridgeSaysBothAndTheMemberIsMissing) {
  failCall(Operation::IORegistryEntryFromPath, 1, Repeat::Once);
  const auto member = makeMember("M");
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_THAT(
      log().lines(),
      ElementsAre(
          message("AppleRAIDMember::findRegistryEntry - couldn't find PCI Bridge registry entry"),
          message("AppleRAIDMember::AppleRAIDMember - Cannot find registry entry for AppleRAID "
                  "member")));
}

TEST_F(MemberWithoutABridgeTest, RefreshWithoutTheBridgeSaysBothAndTheMemberIsMissing) {
  addMember(bridge(), "M");
  const auto member = makeMember("M");
  failCall(Operation::IORegistryEntryFromPath, 1, Repeat::Once);
  member->refresh();
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_THAT(
      log().lines(),
      ElementsAre(
          message("AppleRAIDMember::entryFromUUID - Cannot find back the PCI Bridge object"),
          TestSupport::debug(
              "AppleRAIDMember::refresh - Cannot find registry entry for AppleRAID member")));
}

}  // namespace
}  // namespace ModelTest
