#include <gmock/gmock.h>

#include "tests/model/MemberFixture.h"

// Where a member was seen: its own path, or what stands in for it when that can't be had.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::failCall;
using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::Repeat;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::addEntry;
using TestSupport::message;

const auto NoPath = message(
    "AppleRAIDMember::readProperties - Unable to found AppleRAID-MemberStatus IORegustry entry "
    "path");
const auto NoAncestors =
    message("ThunderboltDevice::locationOfMember - Cannot get parent iterator for member entry");

constexpr std::size_t LongestPath = 509;

class AppleRAIDMemberPathTest : public MemberFixture {
 protected:
  // A chain of entries, so that what is beneath it has a path longer than the longest.
  EntryID addDeepPlace(EntryID parent) {
    for (int i = 0; i < 5; ++i)
      parent = addEntry(parent, "IOService", std::string(110, static_cast<char>('a' + i)));
    return parent;
  }

  // A member whose own path can't be had.
  MemberReference makeDeepMember(EntryID parent) {
    addMember(addDeepPlace(parent), "M");
    return makeMember("M");
  }
};

TEST_F(AppleRAIDMemberPathTest, ThePathOfTheEntryIsTaken) {
  const EntryID entry = addMember(enclosure().port(2), "M");
  EXPECT_EQ(MemoryRegistry::path(entry), makeMember("M")->registryPath());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(AppleRAIDMemberPathTest, APathOf509CharactersIsTakenAndNoLongerOne) {
  EntryID place = bridge();
  while (LongestPath - MemoryRegistry::path(place).size() > 140)
    place = addEntry(place, "IOService", std::string(100, 'a'));
  const std::size_t room = LongestPath - MemoryRegistry::path(place).size();
  place = addEntry(place, "IOService", "b");
  const EntryID entry = addMember(place, "M");
  // The last name is drawn out until the path has its greatest length.
  const std::string name(room - std::string("//AppleRAIDMember").size(), 'b');
  MemoryRegistry::setName(place, name);
  const auto member = makeMember("M");
  EXPECT_EQ(LongestPath, member->registryPath().size());
  EXPECT_EQ(MemoryRegistry::path(entry), member->registryPath());
  EXPECT_THAT(log().lines(), IsEmpty());

  MemoryRegistry::setName(place, name + "b");
  member->refresh();
  EXPECT_EQ("", member->registryPath());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath));
  expectLookUps(1);
}

TEST_F(AppleRAIDMemberPathTest, WithoutItsPathTheMemberHasThePortsPathAndLocationWithoutSeparator) {
  const auto member = makeDeepMember(enclosure().port(2));
  EXPECT_EQ(MemoryRegistry::path(enclosure().port(2)) + "1", member->registryPath());
  EXPECT_EQ(MemberOnline, member->state());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath));
}

TEST_F(AppleRAIDMemberPathTest, TheSameHoldsAtRefresh) {
  const EntryID near = addMember(enclosure().port(2), "M");
  const auto member = makeMember("M");
  MemoryRegistry::terminate(near);
  addMember(addDeepPlace(enclosure().port(1)), "M", "Failed");
  member->refresh();
  EXPECT_EQ(MemoryRegistry::path(enclosure().port(1)) + "0", member->registryPath());
  EXPECT_EQ(MemberFailed, member->state());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath));
  expectLookUps(1);
}

TEST_F(AppleRAIDMemberPathTest, APathThatCanBeHadAgainReplacesTheStandIn) {
  const EntryID entry = addMember(enclosure().port(2), "M");
  failCall(Operation::IORegistryEntryGetPath, 1, Repeat::Once);
  const auto member = makeMember("M");
  EXPECT_EQ(MemoryRegistry::path(enclosure().port(2)) + "1", member->registryPath());
  EXPECT_THAT(log().take(), ElementsAre(NoPath));
  member->refresh();
  EXPECT_EQ(MemoryRegistry::path(entry), member->registryPath());
  EXPECT_THAT(log().lines(), IsEmpty());
  expectLookUps(1);
}

TEST_F(AppleRAIDMemberPathTest, TheNearestPortCounts) {
  const EntryID inner = addEntry(enclosure().port(1), "AppleAHCIPort", "INNER", "1F");
  const auto member = makeDeepMember(inner);
  EXPECT_EQ(MemoryRegistry::path(inner) + "1F", member->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, APortOfADerivedClassCounts) {
  MemoryRegistry::EntryDescription description;
  description.className = "ExamplePort";
  description.location = "7";
  description.inheritance = {"IORegistryEntry", "IOService", "AppleAHCIPort", "ExamplePort"};
  const EntryID port = MemoryRegistry::add(bridge(), description);
  const auto member = makeDeepMember(port);
  EXPECT_EQ(MemoryRegistry::path(port) + "7", member->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, APortAboveASecondParentIsFound) {
  const EntryID place = addDeepPlace(bridge());
  const EntryID entry = addMember(place, "M");
  MemoryRegistry::attach(entry, enclosure().port(1));
  EXPECT_EQ(MemoryRegistry::path(enclosure().port(1)) + "0", makeMember("M")->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, WithoutAPortAboveItThePathIsEmpty) {
  const auto member = makeDeepMember(bridge());
  EXPECT_EQ("", member->registryPath());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath));
}

TEST_F(AppleRAIDMemberPathTest, APathThatWasThereIsReplacedByTheEmptyOne) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  ASSERT_NE("", member->registryPath());
  failCall(Operation::IORegistryEntryGetPath, 1, Repeat::Once);
  member->readProperties(handleOn(entry).get());
  EXPECT_EQ("", member->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, WithoutAWalkUpwardsThePathIsEmptyAndTheLineNamesAnotherOperation) {
  addMember(addDeepPlace(enclosure().port(1)), "M");
  failCall(Operation::IORegistryEntryCreateIterator, 2, Repeat::Once);
  const auto member = makeMember("M");
  EXPECT_EQ("", member->registryPath());
  EXPECT_EQ(MemberOnline, member->state());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath, NoAncestors));
}

TEST_F(AppleRAIDMemberPathTest, AWalkUpwardsThatIsNoneMeetsNoPortAndIsNotLogged) {
  addMember(addDeepPlace(enclosure().port(1)), "M");
  failCall(Operation::IORegistryEntryCreateIterator, 2, Repeat::Once, Failure::NullSuccess);
  EXPECT_EQ("", makeMember("M")->registryPath());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath));
}

TEST_F(AppleRAIDMemberPathTest, APortWithoutALocationAddsItsPathAlone) {
  MemoryRegistry::setLocation(enclosure().port(1), "");
  const auto member = makeDeepMember(enclosure().port(1));
  EXPECT_EQ(MemoryRegistry::path(enclosure().port(1)), member->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, APortWithoutAPathAddsItsLocationAlone) {
  addMember(enclosure().port(2), "M");
  failCall(Operation::IORegistryEntryGetPath, 1, Repeat::FromThenOn);
  const auto member = makeMember("M");
  MemoryRegistry::failNothing();
  EXPECT_EQ("1", member->registryPath());
  EXPECT_THAT(log().lines(), ElementsAre(NoPath));
}

TEST_F(AppleRAIDMemberPathTest, APortWhosePathIsTooLongAddsItsLocationAlone) {
  const EntryID port = addEntry(addDeepPlace(bridge()), "AppleAHCIPort", "PRT9", "9");
  addMember(port, "M");
  EXPECT_EQ("9", makeMember("M")->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, APortWithNeitherEndsTheSearchWithAnEmptyPath) {
  const EntryID port = addEntry(addDeepPlace(enclosure().port(1)), "AppleAHCIPort", "PRT9");
  addMember(port, "M");
  EXPECT_EQ("", makeMember("M")->registryPath());
}

TEST_F(AppleRAIDMemberPathTest, TheWalkUpwardsEndsAtThePort) {
  const EntryID entry = addMember(enclosure().port(2), "M");
  const auto member = makeMember("M");
  const auto steps = [&] {
    const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
    failCall(Operation::IORegistryEntryGetPath, 1, Repeat::Once);
    member->readProperties(handleOn(entry).get());
    return MemoryRegistry::calls(Operation::IOIteratorNext) - before;
  };
  EXPECT_EQ(1U, steps());
  MemoryRegistry::attach(entry, elsewhere());
  EXPECT_EQ(1U, steps());
}

TEST_F(AppleRAIDMemberPathTest, TheWalkUpwardsGivesEveryEntryBack) {
  const auto member = makeDeepMember(enclosure().port(2));
  const auto accounts = MemoryRegistry::accounts();
  EXPECT_EQ(0U, accounts.iterators);
  EXPECT_THAT(accounts.entries,
              ElementsAre(testing::Field(&MemoryRegistry::KeptEntry::id, bridge())));
}

}  // namespace
}  // namespace ModelTest
