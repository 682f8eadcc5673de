#include <gmock/gmock.h>

#include "tests/model/BareHost.h"
#include "tests/model/ModelFixture.h"

// How a volume finds its set's entry again.

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

const auto NoBridge = message("RAIDVolume::EntryFromUUID - Cannot find back the PCI Bridge object");
const auto NoIterator =
    message("RAIDVolume::EntryFromUUID - couldn't create iterator on PCI Bridge");

class RAIDVolumeSearchTest : public ModelFixture {
 protected:
  // A volume whose construction, which finds nothing, is not of interest here.
  VolumeReference makeUnread(const std::string& uuid) {
    auto volume = makeVolume(uuid);
    expectLookUps(1);
    log().clear();
    return volume;
  }

  // The entry that the search answers with, whose reference is given back; 0 for none.
  static EntryID find(const VolumeReference& volume) {
    const auto entry = RegistryHandle::adopt(volume->entryFromUUID());
    const EntryID id = MemoryRegistry::entryOf(entry.get());
    if (id != 0) {
      EXPECT_EQ(1U, MemoryRegistry::references(id)) << "the caller's";
    }
    return id;
  }
};

TEST_F(RAIDVolumeSearchTest, FindsTheSetAnywhereBeneathTheBridgeAndTheCallerOwnsIt) {
  const auto volume = makeUnread("SET");
  addSet(bridge(), {"OTHER", {}});
  const EntryID member = addMember(enclosure().port(2), "M");
  const EntryID set = addSet(member, {"SET", {"M"}});
  EXPECT_EQ(1U, keptBy([&] { EXPECT_EQ(set, find(volume)); }));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(RAIDVolumeSearchTest, EachLookUpKeepsOneReferenceOnTheBridge) {
  const auto volume = makeUnread("SET");
  EXPECT_EQ(1U, keptBy([&] { EXPECT_EQ(0U, find(volume)); }));
  const EntryID set = addSet(bridge(), {"SET", {}});
  EXPECT_EQ(1U, keptBy([&] { EXPECT_EQ(set, find(volume)); }));
  EXPECT_EQ(1U, keptBy([&] { EXPECT_EQ(set, find(volume)); }));
}

TEST_F(RAIDVolumeSearchTest, DoesNotLookElsewhere) {
  const auto volume = makeUnread("SET");
  addSet(elsewhere(), {"SET", {}});
  addSet(enclosure().upstreamBridge(), {"SET", {}});
  EXPECT_EQ(0U, find(volume));
  expectLookUps(1);
}

TEST_F(RAIDVolumeSearchTest, ASetThatIsNotThereIsNotLogged) {
  const auto volume = makeUnread("SET");
  EXPECT_EQ(0U, find(volume));
  EXPECT_THAT(log().lines(), IsEmpty());
  expectLookUps(1);
}

TEST_F(RAIDVolumeSearchTest, ComparesTheWholeUUIDByteByByte) {
  const auto volume = makeUnread("SET-1");
  for (const char* uuid : {"SET-", "SET-11", "set-1", " SET-1", ""})
    addSet(bridge(), {uuid, {}});
  EXPECT_EQ(0U, find(volume));
  expectLookUps(1);
}

TEST_F(RAIDVolumeSearchTest, TakesOnlyEntriesOfTheSetClass) {
  const auto volume = makeUnread("SET");
  const EntryID member = addMember(bridge(), "M");
  MemoryRegistry::setProperty(member, "AppleRAID-SetUUID", "SET");
  EXPECT_EQ(0U, find(volume));
  expectLookUps(1);
}

TEST_F(RAIDVolumeSearchTest, TakesEveryKindOfSet) {
  const auto volume = makeUnread("SET");
  for (const char* level : {"", "Mirror", "Stripe", "Concat"}) {
    SetText text{"SET", {}};
    text.level = level;
    const EntryID set = addSet(bridge(), text);
    EXPECT_EQ(1U, keptBy([&] { EXPECT_EQ(set, find(volume)) << level; }));
    MemoryRegistry::terminate(set);
  }
}

TEST_F(RAIDVolumeSearchTest, OfTwoSetsWithTheUUIDTheFirstMetIsUsed) {
  const EntryID first = addSet(addMember(enclosure().port(1), "M"), {"SET", {}, "Degraded"});
  addSet(bridge(), {"SET", {}, "Online"});  // behind the other: the ports came first
  const auto volume = makeVolume("SET");
  EXPECT_EQ(first, find(volume));
  EXPECT_EQ(VolumeDegraded, volume->state());
  expectLookUps(2);
}

TEST_F(RAIDVolumeSearchTest, TheWalkStopsAtTheFirstMatch) {
  addSet(enclosure().port(1), {"SET", {}});
  const auto volume = makeVolume("SET");
  const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
  find(volume);
  const auto steps = MemoryRegistry::calls(Operation::IOIteratorNext) - before;
  for (int i = 0; i < 10; ++i)
    addSet(bridge(), {"LATER", {}});
  const auto again = MemoryRegistry::calls(Operation::IOIteratorNext);
  find(volume);
  EXPECT_EQ(steps, MemoryRegistry::calls(Operation::IOIteratorNext) - again);
  expectLookUps(3);
}

TEST_F(RAIDVolumeSearchTest, AnInnerSetAnswersToTheUUIDOfTheOuterOne) {
  const EntryID inner = addSet(bridge(), {"OUTER", {}});
  MemoryRegistry::setProperty(inner, "AppleRAID-MemberUUID", "INNER");
  addSet(inner, {"OUTER", {"INNER"}});
  const auto volume = makeVolume("OUTER");
  EXPECT_EQ(inner, find(volume));
  expectLookUps(2);
}

TEST_F(RAIDVolumeSearchTest, AnEmptyUUIDEqualsAMissingOne) {
  const auto volume = makeUnread("");
  const EntryID set = addSet(bridge(), {"SET", {}});
  MemoryRegistry::removeProperty(set, "AppleRAID-SetUUID");
  EXPECT_EQ(set, find(volume));
  expectLookUps(1);
}

TEST_F(RAIDVolumeSearchTest, WithoutTheBridgeSaysSoAndKeepsNothing) {
  const auto volume = makeUnread("SET");
  addSet(bridge(), {"SET", {}});
  failCall(Operation::IORegistryEntryFromPath, 1, Repeat::Once);
  EXPECT_EQ(0U, keptBy([&] { EXPECT_EQ(0U, find(volume)); }));
  EXPECT_THAT(log().lines(), ElementsAre(NoBridge));
}

TEST_F(RAIDVolumeSearchTest, WithTheBridgeGoneSaysSo) {
  const auto volume = makeUnread("SET");
  MemoryRegistry::terminate(bridge());
  EXPECT_EQ(0U, find(volume));
  EXPECT_THAT(log().lines(), ElementsAre(NoBridge));
}

TEST_F(RAIDVolumeSearchTest, OnAHostWithoutABridgePathSaysTheBridgeIsMissing) {
  const Pelago::Reference<BareHost> host(new BareHost);
  addSet(bridge(), {"SET", {}});
  const VolumeReference volume(new RAIDVolume(host.get(), "SET"));
  log().clear();
  EXPECT_EQ(0U, find(volume));
  EXPECT_THAT(log().lines(), ElementsAre(NoBridge));
}

TEST_F(RAIDVolumeSearchTest, WithoutAnIteratorSaysSoAndKeepsTheBridge) {
  const auto volume = makeUnread("SET");
  addSet(bridge(), {"SET", {}});
  for (const Failure failure : {Failure::Error, Failure::NullSuccess}) {
    failCall(Operation::IORegistryEntryCreateIterator, 1, Repeat::Once, failure);
    EXPECT_EQ(1U, keptBy([&] { EXPECT_EQ(0U, find(volume)); }));
    EXPECT_THAT(log().take(), ElementsAre(NoIterator));
  }
}

TEST_F(RAIDVolumeSearchTest, TheUUIDOfAnEntryIsEmptyWhenThereIsNone) {
  const EntryID set = addSet(bridge(), {"SET", {}});
  EXPECT_EQ("SET", RAIDVolume::UUIDFromEntry(handleOn(set).get()));
  MemoryRegistry::setProperty(set, "AppleRAID-SetUUID", 17);
  EXPECT_EQ("", RAIDVolume::UUIDFromEntry(handleOn(set).get()));
  MemoryRegistry::removeProperty(set, "AppleRAID-SetUUID");
  EXPECT_EQ("", RAIDVolume::UUIDFromEntry(handleOn(set).get()));
  EXPECT_EQ("", RAIDVolume::UUIDFromEntry(0));
}

}  // namespace
}  // namespace ModelTest
