#include <gmock/gmock.h>

#include "model/RAIDMember.h"
#include "tests/model/ModelFixture.h"
#include "tests/model/StubMember.h"

// The members that a set lists (findMembers).

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::Array;
using MemoryRegistry::setProperty;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::message;
using Members = std::vector<Pelago::Reference<RAIDMember>>;

const auto NoMembers = message("RAIDVolume::findMembers - cannot get set members");
const auto MemberNotThere =
    message("AppleRAIDMember::AppleRAIDMember - Cannot find registry entry for AppleRAID member");

class RAIDVolumeListTest : public ModelFixture {
 protected:
  RAIDVolumeListTest() : set(addSet(bridge(), {"SET", {}})), volume(makeVolume("SET")) {
    expectLookUps(1);
    log().clear();
  }

  // The members found, with the references that are the caller's.
  Members find() {
    Members held;
    for (auto* member : volume->findMembers(handleOn(set).get()))
      held.push_back(Pelago::Reference<RAIDMember>::adopt(member));
    return held;
  }

  static std::vector<std::string> uuids(const Members& members) {
    std::vector<std::string> result;
    for (const auto& member : members)
      result.push_back(member->uuid());
    return result;
  }

  // A filed member that writes down its refreshes.
  StubMember* file(const std::string& uuid) {
    auto* member = new StubMember(uuid);
    member->onRefresh([this](const StubMember& refreshed) {
      refreshes.push_back(refreshed.uuid() + " " + std::to_string(refreshed.references()));
    });
    volume->addRAIDMember(member);
    return member;
  }

  EntryID set;
  VolumeReference volume;
  std::vector<std::string> refreshes;
};

TEST_F(RAIDVolumeListTest, NewMembersComeInTheOrderOfTheArrayWithOneReferenceEach) {
  for (const char* uuid : {"A", "B", "C"})
    addMember(bridge(), uuid);
  setMembers(set, {"C", "A", "B"});
  const auto members = find();
  EXPECT_THAT(uuids(members), ElementsAre("C", "A", "B"));
  for (const auto& member : members) {
    EXPECT_EQ(1, member->references());
    EXPECT_EQ(MemberOnline, member->state());
    EXPECT_EQ(volume.get(), member->volume());
  }
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(RAIDVolumeListTest, NewMembersAreNotFiled) {
  addMember(bridge(), "A");
  setMembers(set, {"A"});
  const auto members = find();
  EXPECT_THAT(volume->members(), IsEmpty());
}

TEST_F(RAIDVolumeListTest, NewMembersKeepNoReferenceOnTheBridge) {
  addMember(bridge(), "A");
  setMembers(set, {"A", "ABSENT"});
  EXPECT_EQ(0U, keptBy([&] { find(); }));
}

TEST_F(RAIDVolumeListTest, FiledMembersAreRefreshedInTheOrderOfTheArrayBeforeTheyAreReferenced) {
  for (const char* uuid : {"A", "B", "C"})
    file(uuid);
  setMembers(set, {"B", "C", "A"});
  const auto members = find();
  EXPECT_THAT(refreshes, ElementsAre("B 1", "C 1", "A 1"));
  EXPECT_THAT(uuids(members), ElementsAre("B", "C", "A"));
  for (const auto& member : members)
    EXPECT_EQ(2, member->references()) << member->uuid();
}

TEST_F(RAIDVolumeListTest, FiledMembersThatAreNotListedAreNotTouched) {
  auto* member = file("A");
  file("B");
  setMembers(set, {"B"});
  find();
  EXPECT_THAT(refreshes, ElementsAre("B 1"));
  EXPECT_EQ(1, member->references());
  EXPECT_EQ(2U, volume->members().size());
}

TEST_F(RAIDVolumeListTest, AFiledMemberListedTwiceIsRefreshedAndReferencedTwice) {
  auto* member = file("A");
  setMembers(set, {"A", "A"});
  const auto members = find();
  EXPECT_THAT(refreshes, ElementsAre("A 1", "A 2"));
  EXPECT_EQ(3, member->references());
}

TEST_F(RAIDVolumeListTest, AUUIDListedTwiceWhileNotFiledYieldsTwoNewMembers) {
  addMember(bridge(), "A");
  setMembers(set, {"A", "A"});
  const auto members = find();
  ASSERT_EQ(2U, members.size());
  EXPECT_NE(members[0].get(), members[1].get());
  EXPECT_EQ(1, members[0]->references());
  EXPECT_EQ(1, members[1]->references());
}

TEST_F(RAIDVolumeListTest, AMemberWithoutAnEntryIsListedAsNotFound) {
  setMembers(set, {"ABSENT"});
  const auto members = find();
  ASSERT_EQ(1U, members.size());
  EXPECT_EQ(MemberNotFound, members[0]->state());
  EXPECT_THAT(log().lines(), ElementsAre(MemberNotThere));
}

TEST_F(RAIDVolumeListTest, WithoutTheListSaysSo) {
  MemoryRegistry::removeProperty(set, "AppleRAID-Members");
  EXPECT_THAT(find(), IsEmpty());
  EXPECT_THAT(log().lines(), ElementsAre(NoMembers));
}

TEST_F(RAIDVolumeListTest, AListThatCannotBeReadSaysSo) {
  setMembers(set, {"A"});
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryCreateCFProperty, 1,
                           MemoryRegistry::Repeat::Once);
  EXPECT_THAT(find(), IsEmpty());
  EXPECT_THAT(log().lines(), ElementsAre(NoMembers));
}

TEST_F(RAIDVolumeListTest, AListOfAnotherTypeCountsAsMissing) {
  const struct {
    const char* what;
    MemoryRegistry::PropertyValue value;
  } rows[] = {{"text", "A"},
              {"number", 1},
              {"boolean", true},
              {"dictionary", MemoryRegistry::Dictionary{{"A", "A"}}},
              {"data", MemoryRegistry::Data{65}}};
  for (const auto& row : rows) {
    setProperty(set, "AppleRAID-Members", row.value);
    EXPECT_THAT(find(), IsEmpty()) << row.what;
    EXPECT_THAT(log().take(), ElementsAre(NoMembers)) << row.what;
  }
}

TEST_F(RAIDVolumeListTest, AnEmptyListIsNotLogged) {
  file("A");
  EXPECT_THAT(find(), IsEmpty());
  EXPECT_THAT(log().lines(), IsEmpty());
  EXPECT_THAT(refreshes, IsEmpty());
}

TEST_F(RAIDVolumeListTest, AnElementThatIsNoTextReadsAsTheEmptyUUID) {
  setProperty(set, "AppleRAID-Members",
              Array{7, true, Array{"A"}, MemoryRegistry::Dictionary{{"A", "A"}}, "A"});
  addMember(bridge(), "A");
  const auto members = find();
  EXPECT_THAT(uuids(members), ElementsAre("", "", "", "", "A"));
  EXPECT_EQ(4U, log().count(MemberNotThere));
  EXPECT_EQ(4U, log().lines().size());
}

TEST_F(RAIDVolumeListTest, TheListIsGivenBack) {
  addMember(bridge(), "A");
  setMembers(set, {"A", "B"});
  find();
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
  setMembers(set, {});
  find();
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
  setProperty(set, "AppleRAID-Members", "A");
  find();
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

TEST_F(RAIDVolumeListTest, TheEntryStaysTheCallers) {
  setMembers(set, {"A"});
  const auto entry = handleOn(set);
  for (auto* member : volume->findMembers(entry.get()))
    member->deref();
  EXPECT_EQ(1U, MemoryRegistry::references(set));
}

}  // namespace
}  // namespace ModelTest
