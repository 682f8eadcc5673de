#include "model/AppleRAIDMember.h"

#include <gmock/gmock.h>

#include "tests/model/MemberFixture.h"

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::removeProperty;
using MemoryRegistry::setProperty;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::debug;
using TestSupport::message;

const auto NotFoundAtFirst =
    message("AppleRAIDMember::AppleRAIDMember - Cannot find registry entry for AppleRAID member");
const auto NotFoundLater =
    debug("AppleRAIDMember::refresh - Cannot find registry entry for AppleRAID member");

using AppleRAIDMemberTest = MemberFixture;

struct StatusRow {
  const char* text;
  MemberState state;
};
constexpr StatusRow StatusRows[] = {{"Offline", MemberOffline},
                                    {"Standby", MemberStandby},
                                    {"Online", MemberOnline},
                                    {"Failed", MemberFailed}};

TEST_F(AppleRAIDMemberTest, IsReadAtConstruction) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  EXPECT_EQ("M", member->uuid());
  EXPECT_EQ(volume.get(), member->volume());
  EXPECT_EQ(MemberOnline, member->state());
  EXPECT_EQ(MemoryRegistry::path(entry), member->registryPath());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(AppleRAIDMemberTest, HoldsNoReferenceWhenNewAndTakesNoneOnItsVolume) {
  const int before = volume->references();
  const AppleRAIDMember member(volume.get(), "M");
  EXPECT_EQ(0, member.references());
  EXPECT_EQ(before, volume->references());
}

TEST_F(AppleRAIDMemberTest, ConstructionGivesEveryReferenceBack) {
  const EntryID entry = addMember(bridge(), "M");
  EXPECT_EQ(0U, keptBy([&] { makeMember("M"); }));
  EXPECT_EQ(0U, keptBy([&] { makeMember("ABSENT"); }));
  EXPECT_EQ(0U, MemoryRegistry::references(entry));
}

TEST_F(AppleRAIDMemberTest, IsMadeEvenWhenItsEntryIsMissing) {
  const auto member = makeMember("ABSENT");
  EXPECT_EQ("ABSENT", member->uuid());
  EXPECT_EQ(volume.get(), member->volume());
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_EQ("", member->registryPath());
  EXPECT_THAT(log().lines(), ElementsAre(NotFoundAtFirst));
}

TEST_F(AppleRAIDMemberTest, EachStatusTextIsReadAtConstructionAndAtRefresh) {
  const EntryID entry = addMember(bridge(), "M");
  const auto refreshed = makeMember("M");
  for (const auto& row : StatusRows) {
    setProperty(entry, "AppleRAID-MemberStatus", row.text);
    EXPECT_EQ(row.state, makeMember("M")->state()) << row.text;
    EXPECT_EQ(1U, keptBy([&] { refreshed->refresh(); })) << row.text;
    EXPECT_EQ(row.state, refreshed->state()) << row.text;
  }
}

TEST_F(AppleRAIDMemberTest, AFreshMemberWithAnUnknownStatusIsUnknown) {
  for (const char* text : {"Rebuilding", "online", "ONLINE", "Online ", ""}) {
    const EntryID entry = addMember(bridge(), "M", text);
    EXPECT_EQ(MemberUnknown, makeMember("M")->state()) << '"' << text << '"';
    MemoryRegistry::terminate(entry);
  }
}

TEST_F(AppleRAIDMemberTest, AnUnknownStatusLeavesEveryStateAsItWas) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  for (const auto& row : StatusRows) {
    setProperty(entry, "AppleRAID-MemberStatus", row.text);
    member->refresh();
    setProperty(entry, "AppleRAID-MemberStatus", "Rebuilding");
    member->refresh();
    EXPECT_EQ(row.state, member->state()) << row.text;
    removeProperty(entry, "AppleRAID-MemberStatus");
    member->refresh();
    EXPECT_EQ(row.state, member->state()) << row.text << ", then none";
    setProperty(entry, "AppleRAID-MemberStatus", 2);
    member->refresh();
    EXPECT_EQ(row.state, member->state()) << row.text << ", then a number";
  }
  expectLookUps(4 * std::size(StatusRows));
}

TEST_F(AppleRAIDMemberTest, AStatusThatDiffersFromOnlineOnlyInLetterCaseLeavesTheStateUnchanged) {
  const EntryID entry = addMember(bridge(), "M", "Failed");
  const auto member = makeMember("M");
  setProperty(entry, "AppleRAID-MemberStatus", "ONLINE");
  member->refresh();
  setProperty(entry, "AppleRAID-MemberStatus", "online");
  member->refresh();
  EXPECT_EQ(MemberFailed, member->state());
  expectLookUps(2);
}

TEST_F(AppleRAIDMemberTest, EachRefreshKeepsOneReferenceOnTheBridge) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(1U, keptBy([&] { member->refresh(); }));
  MemoryRegistry::terminate(entry);
  EXPECT_EQ(1U, keptBy([&] { member->refresh(); }));  // found or not
  EXPECT_EQ(0U, MemoryRegistry::references(entry));
}

TEST_F(AppleRAIDMemberTest, ARefreshSaysMissingAsDebugWhereConstructionSaysItAsAMessage) {
  const auto member = makeMember("ABSENT");
  log().clear();
  member->refresh();
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_THAT(log().lines(), ElementsAre(NotFoundLater));
  expectLookUps(1);
}

TEST_F(AppleRAIDMemberTest, AMemberThatIsGoneIsNotFoundAndIsOnlineAgainWhenItComesBack) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  const std::string path = member->registryPath();
  MemoryRegistry::terminate(entry);
  member->refresh();
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_EQ(path, member->registryPath());  // where it was last seen
  EXPECT_THAT(log().take(), ElementsAre(NotFoundLater));

  const EntryID returned = addMember(TestSupport::behindBridge(bridge()), "M");
  member->refresh();
  EXPECT_EQ(MemberOnline, member->state());
  EXPECT_EQ(MemoryRegistry::path(returned), member->registryPath());
  EXPECT_THAT(log().lines(), IsEmpty());
  expectLookUps(2);
}

TEST_F(AppleRAIDMemberTest, AMemberThatComesBackWithAnUnknownStatusStaysNotFound) {
  const auto member = makeMember("M");
  addMember(bridge(), "M", "Rebuilding");
  log().clear();
  member->refresh();
  EXPECT_EQ(MemberNotFound, member->state());
  EXPECT_NE("", member->registryPath());
  EXPECT_THAT(log().lines(), IsEmpty());
  expectLookUps(1);
}

TEST_F(AppleRAIDMemberTest, UUIDAndVolumeNeverChange) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  setProperty(entry, "AppleRAID-MemberUUID", "OTHER");
  member->readProperties(handleOn(entry).get());
  EXPECT_EQ("M", member->uuid());
  EXPECT_EQ(volume.get(), member->volume());
}

TEST_F(AppleRAIDMemberTest, ReadingPropertiesDoesNotTakeOverTheEntry) {
  const EntryID entry = addMember(bridge(), "M");
  const auto member = makeMember("M");
  const auto held = handleOn(entry);
  member->readProperties(held.get());
  EXPECT_EQ(1U, MemoryRegistry::references(entry));
}

TEST_F(AppleRAIDMemberTest, TheUUIDOfAnEntryIsEmptyWhenThereIsNone) {
  const EntryID entry = addMember(bridge(), "M");
  EXPECT_EQ("M", AppleRAIDMember::UUIDFromEntry(handleOn(entry).get()));
  removeProperty(entry, "AppleRAID-MemberUUID");
  EXPECT_EQ("", AppleRAIDMember::UUIDFromEntry(handleOn(entry).get()));
  setProperty(entry, "AppleRAID-MemberUUID", true);
  EXPECT_EQ("", AppleRAIDMember::UUIDFromEntry(handleOn(entry).get()));
  EXPECT_EQ("", AppleRAIDMember::UUIDFromEntry(0));
}

}  // namespace
}  // namespace ModelTest
