#include "model/RAIDHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "model/RAIDVolume.h"
#include "platform/pelago/Event.h"
#include "tests/model/BareHost.h"
#include "tests/model/ModelFixture.h"
#include "tests/model/StubMember.h"

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;

class RAIDHostTest : public TestSupport::RegistryFixture {
 protected:
  // A volume on the host, not filed, with one reference of the test's own.
  VolumeReference makeVolume(const std::string& uuid) {
    return VolumeReference(new RAIDVolume(host.get(), uuid));
  }

  Pelago::Reference<BareHost> host{new BareHost};
};

TEST_F(RAIDHostTest, AFreshHostHasInvalidIdentity) {
  EXPECT_EQ("invalid", host->modelName());
  EXPECT_EQ(0U, host->modelID());
  EXPECT_EQ("invalid", host->vendorName());
  EXPECT_EQ(0U, host->vendorID());
  EXPECT_EQ(-1, host->deviceStatus());
  EXPECT_EQ(0, host->bayCount());
}

TEST_F(RAIDHostTest, TheIdentitysNumbersHaveTheirWidths) {
  EXPECT_TRUE((std::is_same_v<std::uint64_t, decltype(host->modelID())>));
  EXPECT_TRUE((std::is_same_v<std::uint64_t, decltype(host->vendorID())>));
  EXPECT_TRUE((std::is_same_v<std::int32_t, decltype(host->deviceStatus())>));
  EXPECT_TRUE((std::is_same_v<std::uint8_t, decltype(host->bayCount())>));
}

TEST_F(RAIDHostTest, AHostWithoutVolumesYieldsAnEmptyVector) {
  EXPECT_THAT(host->raidVolumes(), IsEmpty());
}

TEST_F(RAIDHostTest, VolumesComeInAscendingOrderOfTheirUUIDsHoweverTheyWereAdded) {
  const auto b = makeVolume("B");
  const auto a = makeVolume("A");
  const auto longer = makeVolume("AA");
  host->addRAIDVolume(b.get());
  host->addRAIDVolume(longer.get());
  host->addRAIDVolume(a.get());
  EXPECT_THAT(host->raidVolumes(), ElementsAre(a.get(), longer.get(), b.get()));
  for (auto* volume : host->raidVolumes())
    host->removeRAIDVolume(volume);
}

TEST_F(RAIDHostTest, UUIDsAreOrderedByteWise) {
  const auto lower = makeVolume("a");
  const auto upper = makeVolume("Z");
  const auto beyondASCII = makeVolume("\xC3\x84");
  for (auto* volume : {beyondASCII.get(), lower.get(), upper.get()})
    host->addRAIDVolume(volume);
  EXPECT_THAT(host->raidVolumes(), ElementsAre(upper.get(), lower.get(), beyondASCII.get()));
  for (auto* volume : host->raidVolumes())
    host->removeRAIDVolume(volume);
}

TEST_F(RAIDHostTest, ListingVolumesTakesNoReferencesAndIsACopy) {
  const auto volume = makeVolume("A");
  host->addRAIDVolume(volume.get());
  auto listed = host->raidVolumes();
  EXPECT_EQ(2, volume->references());
  listed.clear();
  EXPECT_THAT(host->raidVolumes(), ElementsAre(volume.get()));
  host->removeRAIDVolume(volume.get());
}

TEST_F(RAIDHostTest, AddingTakesOneReference) {
  const auto volume = makeVolume("A");
  EXPECT_EQ(1, volume->references());
  host->addRAIDVolume(volume.get());
  EXPECT_EQ(2, volume->references());
  host->removeRAIDVolume(volume.get());
}

TEST_F(RAIDHostTest, AddingTheSameVolumeTwiceTakesOneReferenceOnly) {
  const auto volume = makeVolume("A");
  host->addRAIDVolume(volume.get());
  host->addRAIDVolume(volume.get());
  EXPECT_EQ(2, volume->references());
  EXPECT_THAT(host->raidVolumes(), ElementsAre(volume.get()));
  host->removeRAIDVolume(volume.get());
}

TEST_F(RAIDHostTest, AddingAnotherVolumeWithAFiledUUIDLeavesTheFirstAndTakesNothing) {
  const auto first = makeVolume("A");
  const auto second = makeVolume("A");
  host->addRAIDVolume(first.get());
  host->addRAIDVolume(second.get());
  EXPECT_THAT(host->raidVolumes(), ElementsAre(first.get()));
  EXPECT_EQ(2, first->references());
  EXPECT_EQ(1, second->references());
  host->removeRAIDVolume(first.get());
}

TEST_F(RAIDHostTest, RemovingUnfilesAndGivesTheReferenceBack) {
  const auto a = makeVolume("A");
  const auto b = makeVolume("B");
  host->addRAIDVolume(a.get());
  host->addRAIDVolume(b.get());
  host->removeRAIDVolume(a.get());
  EXPECT_THAT(host->raidVolumes(), ElementsAre(b.get()));
  EXPECT_EQ(1, a->references());
  EXPECT_EQ(2, b->references());
  host->removeRAIDVolume(b.get());
}

TEST_F(RAIDHostTest, RemovingAVolumeThatIsNotFiledStillDropsAReference) {
  auto volume = makeVolume("A");
  volume->ref();
  host->removeRAIDVolume(volume.get());
  EXPECT_EQ(1, volume->references());
}

TEST_F(RAIDHostTest, RemovingAnotherVolumeWithTheUUIDErasesTheFiledOneAndDropsTheGivenOnes) {
  const auto a = makeVolume("SAME");
  const auto b = makeVolume("SAME");
  b->ref();
  host->addRAIDVolume(a.get());
  host->removeRAIDVolume(b.get());
  EXPECT_THAT(host->raidVolumes(), IsEmpty());
  EXPECT_EQ(2, a->references());  // the host's is never given back
  EXPECT_EQ(1, b->references());
  a->deref();
}

TEST_F(RAIDHostTest, RemovingTheLastReferenceEndsTheVolume) {
  bool ended = false;
  auto volume = makeVolume("A");
  auto* member = new StubMember("M");
  member->onEnd([&](const StubMember&) {
    ended = true;
    EXPECT_THAT(host->raidVolumes(), IsEmpty()) << "off the list by then";
  });
  volume->addRAIDMember(member);
  host->addRAIDVolume(volume.get());
  volume.reset();
  EXPECT_FALSE(ended);
  host->removeRAIDVolume(host->raidVolumes().at(0));
  EXPECT_TRUE(ended);
}

TEST_F(RAIDHostTest, TheSlotQueriesOfTheBaseAnswerMinusOneForAnyArguments) {
  const Pelago::Reference<StubMember> member(new StubMember("M"));
  for (const bool infer : {false, true}) {
    EXPECT_EQ(-1, host->locationOfMember(nullptr, infer));
    EXPECT_EQ(-1, host->locationOfMember(member.get(), infer));
  }
  for (const int slot : {-2147483647, -1, 0, 1, 5, 2147483647})
    EXPECT_EQ(-1, host->locationOfNotMember(slot)) << slot;
}

TEST_F(RAIDHostTest, AHostThatEndsLeavesItsVolumesWithTheirReferences) {
  const auto a = makeVolume("A");
  const auto b = makeVolume("B");
  host->addRAIDVolume(a.get());
  host->addRAIDVolume(b.get());
  host.reset();
  EXPECT_EQ(2, a->references());
  EXPECT_EQ(2, b->references());
  a->deref();
  b->deref();
}

TEST_F(RAIDHostTest, AHostOfAnotherKindHasNoBridgeAndNoDevice) {
  EXPECT_EQ("", host->pciBridgePath());
  EXPECT_EQ(0U, host->deviceID());
}

TEST_F(RAIDHostTest, EventsAreIgnored) {
  Pelago::Event event(3, nullptr);
  host->event(&event);
  EXPECT_EQ(1, host->references());
}

TEST_F(RAIDHostTest, NothingIsLoggedByAddingAndRemoving) {
  const auto volume = makeVolume("A");
  log().clear();
  host->addRAIDVolume(volume.get());
  host->addRAIDVolume(volume.get());
  host->removeRAIDVolume(volume.get());
  EXPECT_THAT(log().lines(), IsEmpty());
}

using RAIDHostKeyTest = ModelFixture;

TEST_F(RAIDHostKeyTest, TheKeyIsTheVolumesUUIDAtTheMomentOfTheCall) {
  addSet(bridge(), {"A", {}});
  const EntryID other = addSet(bridge(), {"B", {}});
  const Pelago::Reference<BareHost> host(new BareHost);
  const auto volume = makeVolume("A");
  expectLookUps(1);
  host->addRAIDVolume(volume.get());
  volume->readProperties(handleOn(other).get());
  ASSERT_EQ("B", volume->uuid());
  host->addRAIDVolume(volume.get());  // under its other name, once more
  EXPECT_THAT(host->raidVolumes(), ElementsAre(volume.get(), volume.get()));
  EXPECT_EQ(3, volume->references());
  host->removeRAIDVolume(volume.get());
  EXPECT_THAT(host->raidVolumes(), ElementsAre(volume.get()));
  EXPECT_EQ(2, volume->references());
  volume->deref();
}

TEST_F(RAIDHostKeyTest, ADeviceAnswersForItsBridgeAndItsIdentifier) {
  EXPECT_EQ(enclosure().bridgePath(), device()->pciBridgePath());
  EXPECT_EQ(UID, device()->deviceID());
}

}  // namespace
}  // namespace ModelTest
