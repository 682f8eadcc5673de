#include <gmock/gmock.h>

#include "model/RAIDMember.h"
#include "tests/model/ModelFixture.h"
#include "tests/model/StubMember.h"

// A volume's passes over its set, and what they do to references.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::references;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::message;

const auto SetNotThere =
    message("RAIDVolume::refresh - Couldn't find the RAID Set entry for UUID 'SET'");

class RAIDVolumeRefreshTest : public ModelFixture {
 protected:
  RAIDVolumeRefreshTest() : set(addSet(bridge(), {"SET", {}})) {}

  // With a set that lists A and B, which are there.
  VolumeReference makeMirror() {
    addMember(enclosure().port(1), "A");
    addMember(enclosure().port(2), "B");
    setMembers(set, {"A", "B"});
    auto volume = makeVolume("SET");
    expectLookUps(1);
    return volume;
  }

  EntryID set;
};

TEST_F(RAIDVolumeRefreshTest, ANewVolumeHoldsItsMembersAtOnceWithOneReferenceEach) {
  const auto volume = makeMirror();
  EXPECT_THAT(uuidsOf(volume->members()), ElementsAre("A", "B"));
  for (auto* member : volume->members()) {
    EXPECT_EQ(1, member->references());
    EXPECT_EQ(volume.get(), member->volume());
    EXPECT_EQ(MemberOnline, member->state());
  }
  EXPECT_EQ(VolumeOnline, volume->state());
  EXPECT_THAT(log().lines(), IsEmpty());
}

// The set leaves between the look that finds it and the one that reads it.
TEST_F(RAIDVolumeRefreshTest, AVolumeKeepsItsUUIDWhenItCanNoLongerBeRead) {
  const auto volume = makeMirror();
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryCreateCFProperty, 2,
                           MemoryRegistry::Repeat::FromThenOn);
  volume->refresh();
  MemoryRegistry::failNothing();
  EXPECT_EQ("SET", volume->uuid());
  volume->refresh();
  EXPECT_EQ(VolumeOnline, volume->state());
  EXPECT_THAT(uuidsOf(volume->members()), ElementsAre("A", "B"));
  expectLookUps(2);
}

TEST_F(RAIDVolumeRefreshTest, AMemberThatIsStillListedIsTheSameObjectWithTheSameCount) {
  const auto volume = makeMirror();
  const auto before = volume->members();
  for (int i = 0; i < 3; ++i)
    volume->refresh();
  EXPECT_EQ(before, volume->members());
  for (auto* member : volume->members())
    EXPECT_EQ(1, member->references());
  expectLookUps(3 * 3);
}

TEST_F(RAIDVolumeRefreshTest, EachPassKeepsOneReferenceForTheSetAndOneForEachMemberOnFile) {
  addMember(bridge(), "A");
  addMember(bridge(), "B");
  setMembers(set, {"A", "B", "ABSENT"});
  VolumeReference volume;
  EXPECT_EQ(1U, keptBy([&] { volume = makeVolume("SET"); }));  // new members keep none
  EXPECT_EQ(4U, keptBy([&] { volume->refresh(); }));
  setMembers(set, {"A"});
  EXPECT_EQ(2U, keptBy([&] { volume->refresh(); }));
  setMembers(set, {});
  EXPECT_EQ(1U, keptBy([&] { volume->refresh(); }));
  MemoryRegistry::terminate(set);
  EXPECT_EQ(1U, keptBy([&] { volume->refresh(); }));
}

TEST_F(RAIDVolumeRefreshTest, StatesOfMembersFollowTheRegistry) {
  const auto volume = makeMirror();
  const EntryID b = MemoryRegistry::children(enclosure().port(2)).back();
  MemoryRegistry::setProperty(b, "AppleRAID-MemberStatus", "Failed");
  volume->refresh();
  EXPECT_EQ(MemberOnline, volume->members()[0]->state());
  EXPECT_EQ(MemberFailed, volume->members()[1]->state());
  MemoryRegistry::terminate(b);
  volume->refresh();
  EXPECT_EQ(MemberNotFound, volume->members()[1]->state());
  expectLookUps(6);
}

TEST_F(RAIDVolumeRefreshTest, ASetThatHasGoneIsFailedAndLoggedAndEverythingElseIsKept) {
  const auto volume = makeMirror();
  const auto members = volume->members();
  const auto refreshed = MemoryRegistry::calls(MemoryRegistry::Operation::IORegistryEntryFromPath);
  MemoryRegistry::terminate(set);
  MemoryRegistry::terminate(MemoryRegistry::children(enclosure().port(1)).back());
  volume->refresh();
  EXPECT_THAT(log().lines(), ElementsAre(SetNotThere));
  EXPECT_EQ(VolumeFailed, volume->state());
  EXPECT_EQ("SET", volume->uuid());
  EXPECT_EQ("Projects", volume->name());
  EXPECT_EQ(LevelMirror, volume->level());
  EXPECT_EQ(members, volume->members());
  for (auto* member : members) {
    EXPECT_EQ(1, member->references());
    EXPECT_EQ(MemberOnline, member->state()) << "members are not looked at";
  }
  EXPECT_EQ(refreshed + 1,
            MemoryRegistry::calls(MemoryRegistry::Operation::IORegistryEntryFromPath));
  expectLookUps(1);
}

TEST_F(RAIDVolumeRefreshTest, EveryPassWithoutTheSetLogsItAgain) {
  const auto volume = makeMirror();
  MemoryRegistry::terminate(set);
  volume->refresh();
  volume->refresh();
  EXPECT_THAT(log().lines(), ElementsAre(SetNotThere, SetNotThere));
  expectLookUps(2);
}

TEST_F(RAIDVolumeRefreshTest, ASetThatIsNotThereAtFirstMakesAFailedVolume) {
  const auto volume = makeVolume("ABSENT");
  EXPECT_EQ(VolumeFailed, volume->state());
  EXPECT_EQ(LevelUnknown, volume->level());
  EXPECT_EQ("ABSENT", volume->uuid());
  EXPECT_EQ("", volume->name());
  EXPECT_THAT(volume->members(), IsEmpty());
  EXPECT_THAT(log().lines(),
              ElementsAre(message(
                  "RAIDVolume::refresh - Couldn't find the RAID Set entry for UUID 'ABSENT'")));
  expectLookUps(1);
}

TEST_F(RAIDVolumeRefreshTest, ASetThatComesBackIsReadAgain) {
  const auto volume = makeMirror();
  const auto members = volume->members();
  MemoryRegistry::terminate(set);
  volume->refresh();
  addSet(bridge(), {"SET", {"A", "B"}, "Degraded", "Stripe", "Renamed"});
  volume->refresh();
  EXPECT_EQ(VolumeDegraded, volume->state());
  EXPECT_EQ(LevelStripe, volume->level());
  EXPECT_EQ("Renamed", volume->name());
  EXPECT_EQ(members, volume->members());
  expectLookUps(4);
}

TEST_F(RAIDVolumeRefreshTest, WithTheBridgeGoneBothLinesAreLoggedAndTheVolumeIsFailed) {
  const auto volume = makeMirror();
  MemoryRegistry::terminate(bridge());
  volume->refresh();
  EXPECT_EQ(VolumeFailed, volume->state());
  EXPECT_EQ(2U, volume->members().size());
  EXPECT_THAT(
      log().lines(),
      ElementsAre(message("RAIDVolume::EntryFromUUID - Cannot find back the PCI Bridge object"),
                  SetNotThere));
}

TEST_F(RAIDVolumeRefreshTest, WithoutAnIteratorBothLinesAreLoggedAndTheVolumeIsFailed) {
  const auto volume = makeMirror();
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryCreateIterator, 1,
                           MemoryRegistry::Repeat::Once);
  volume->refresh();
  EXPECT_EQ(VolumeFailed, volume->state());
  EXPECT_THAT(
      log().lines(),
      ElementsAre(message("RAIDVolume::EntryFromUUID - couldn't create iterator on PCI Bridge"),
                  SetNotThere));
  expectLookUps(1);
}

TEST_F(RAIDVolumeRefreshTest, ASetThatListsNoMembersLosesThemAllAndIsReadAllTheSame) {
  for (const bool missing : {true, false}) {
    setMembers(set, {"A", "B"});
    const auto volume = makeVolume("SET");
    std::vector<Pelago::Reference<RAIDMember>> held;
    for (auto* member : volume->members())
      held.emplace_back(member);
    if (missing) {
      MemoryRegistry::removeProperty(set, "AppleRAID-Members");
    } else {
      setMembers(set, {});
    }
    MemoryRegistry::setProperty(set, "AppleRAID-SetStatus", missing ? "Degraded" : "Offline");
    MemoryRegistry::setProperty(set, "AppleRAID-LevelName", missing ? "Concat" : "Stripe");
    MemoryRegistry::setProperty(set, "AppleRAID-SetName", missing ? "None" : "Empty");
    log().clear();
    volume->refresh();
    EXPECT_THAT(volume->members(), IsEmpty());
    for (const auto& member : held)
      EXPECT_EQ(1, member->references()) << member->uuid();
    EXPECT_EQ(missing ? VolumeDegraded : VolumeOffline, volume->state());
    EXPECT_EQ(missing ? LevelConcat : LevelStripe, volume->level());
    EXPECT_EQ(missing ? "None" : "Empty", volume->name());
    EXPECT_EQ(missing ? 1U : 0U,
              log().count(message("RAIDVolume::findMembers - cannot get set members")));
  }
  expectLookUps(4);
}

TEST_F(RAIDVolumeRefreshTest, AMemberThatIsNewInAPassIsFiledWithTheVolumesReferenceOnly) {
  const auto volume = makeMirror();
  addMember(bridge(), "AA");
  setMembers(set, {"A", "B", "AA"});
  volume->refresh();
  EXPECT_THAT(uuidsOf(volume->members()), ElementsAre("A", "AA", "B"));
  EXPECT_EQ(1, volume->members()[1]->references());
  expectLookUps(3);
}

TEST_F(RAIDVolumeRefreshTest, AMemberThatIsNoLongerListedLosesTheVolumesReference) {
  const auto volume = makeMirror();
  const Pelago::Reference<RAIDMember> gone(volume->members()[0]);
  setMembers(set, {"B"});
  volume->refresh();
  EXPECT_THAT(uuidsOf(volume->members()), ElementsAre("B"));
  EXPECT_EQ(1, gone->references());
  EXPECT_EQ(1, volume->members()[0]->references());
  expectLookUps(2);
}

TEST_F(RAIDVolumeRefreshTest, MembersAreRemovedInAscendingOrderAfterTheEntryWasGivenBack) {
  const auto volume = makeVolume("SET");
  std::vector<std::string> story;
  for (const char* uuid : {"C", "A", "D", "B"}) {
    auto* member = new StubMember(uuid);
    member->onRefresh([&](const StubMember& it) {
      story.push_back("refresh " + it.uuid() + ", set " + std::to_string(references(set)));
    });
    member->onEnd([&](const StubMember& it) {
      story.push_back("end " + it.uuid() + ", set " + std::to_string(references(set)));
    });
    volume->addRAIDMember(member);
  }
  setMembers(set, {"D", "B"});
  volume->refresh();
  EXPECT_THAT(story,
              ElementsAre("refresh D, set 1", "refresh B, set 1", "end A, set 0", "end C, set 0"));
  story.clear();
  setMembers(set, {});
  volume->refresh();
  EXPECT_THAT(story, ElementsAre("end B, set 0", "end D, set 0"));
  expectLookUps(3);
}

TEST_F(RAIDVolumeRefreshTest, AUUIDListedTwiceIsFiledOnceAndTheSecondObjectGoes) {
  addMember(bridge(), "A");
  setMembers(set, {"A", "A"});
  const auto volume = makeVolume("SET");
  EXPECT_THAT(uuidsOf(volume->members()), ElementsAre("A"));
  EXPECT_EQ(1, volume->members()[0]->references());
  auto* filed = volume->members()[0];
  volume->refresh();
  EXPECT_THAT(volume->members(), ElementsAre(filed));
  EXPECT_EQ(1, filed->references());
  expectLookUps(1 + 3);
}

TEST_F(RAIDVolumeRefreshTest, OfTwoNewMembersWithAUUIDTheFirstListedIsFiled) {
  // The first is read as it is found, the second after it has gone.
  addMember(bridge(), "A");
  setMembers(set, {"A", "A"});
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryFromPath, 3,
                           MemoryRegistry::Repeat::Once);
  const auto volume = makeVolume("SET");
  EXPECT_EQ(MemberOnline, volume->members().at(0)->state());
  EXPECT_EQ(1U, log().count(message(
                    "AppleRAIDMember::findRegistryEntry - couldn't find PCI Bridge registry "
                    "entry")));
  expectLookUps(1);
}

TEST_F(RAIDVolumeRefreshTest, ASetBeneathSeveralMembersIsOneSet) {
  const EntryID a = addMember(enclosure().port(1), "A");
  const EntryID b = addMember(enclosure().port(2), "B");
  const EntryID shared = addSet(a, {"SHARED", {"A", "B"}, "Degraded"});
  MemoryRegistry::attach(shared, b);
  VolumeReference volume;
  EXPECT_EQ(1U, keptBy([&] { volume = makeVolume("SHARED"); }));
  EXPECT_EQ(VolumeDegraded, volume->state());
  EXPECT_EQ(2U, volume->members().size());
  EXPECT_EQ(0U, references(shared));
}

TEST_F(RAIDVolumeRefreshTest, ANestedSetIsAMemberThatIsThereAtFirstAndMissingLater) {
  const EntryID a = addMember(enclosure().port(1), "A");
  const EntryID inner = addSet(a, {"OUTER", {"A"}});
  MemoryRegistry::setProperty(inner, "AppleRAID-MemberUUID", "INNER");
  MemoryRegistry::setProperty(inner, "AppleRAID-MemberStatus", "Online");
  const EntryID outer = addSet(inner, {"OUTER-2", {"INNER"}});
  MemoryRegistry::setProperty(outer, "AppleRAID-MemberUUID", "OUTER-2");
  const auto volume = makeVolume("OUTER-2");
  ASSERT_EQ(1U, volume->members().size());
  EXPECT_EQ(MemberOnline, volume->members()[0]->state());
  volume->refresh();
  EXPECT_EQ(MemberNotFound, volume->members()[0]->state());
  expectLookUps(3);
}

}  // namespace
}  // namespace ModelTest
