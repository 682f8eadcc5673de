#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/RAIDVolume.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BringUp : public DeviceTest {};

TEST_F(BringUp, OfACompleteEnclosureIsOverWhenTheConstructorReturns) {
  two.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  const HeldDevice device(UID);
  EXPECT_EQ(0U, application().queuedEvents());
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge(),
                                         bridgeFound(two.bridgePath()), lookingForDisks()));
  EXPECT_EQ("the Complete Path is " + two.bridgePath() + "\n\n", output());
  ASSERT_EQ(1U, device->raidVolumes().size());
  RAIDVolume* volume = device->raidVolumes()[0];
  EXPECT_EQ("SET", volume->uuid());
  EXPECT_EQ("Projects", volume->name());
  EXPECT_EQ(LevelMirror, volume->level());
  EXPECT_EQ(VolumeOnline, volume->state());
  EXPECT_EQ(device.get(), volume->host());
  EXPECT_EQ(2U, volume->members().size());
  EXPECT_EQ(1, volume->references());
  expectKept(two.bridge(), 1 + 1 + keptAtFirstSight(2));
}

TEST_F(BringUp, OfAFiveBayEnclosureFindsItsSets) {
  five.complete().addDisks({1, 2, 3, 4, 5});
  five.addSet({"A", {1, 2}}).addSet({"B", {3, 4, 5}, "Scratch", "Stripe"});
  const HeldDevice device(UID);
  ASSERT_EQ(2U, device->raidVolumes().size());
  EXPECT_EQ("A", device->raidVolumes()[0]->uuid());
  EXPECT_EQ("B", device->raidVolumes()[1]->uuid());
  EXPECT_EQ(VolumeOnline, device->raidVolumes()[1]->state());
  expectKept(five.bridge(), 1 + 1 + keptAtFirstSight(2) + keptAtFirstSight(3));
  expectKept(five.setMedia("B"), 3);  // looked at for boot devices beneath each member
}

TEST_F(BringUp, FollowsAnEnclosureThatFillsInStageByStage) {
  two.addSwitch();
  const HeldDevice device(UID);
  pump().turn();
  EXPECT_THAT(log().take(), ElementsAre(lookingForPort(), waitingForPCIPath(), lookingForPort(),
                                        waitingForPCIPath()));
  EXPECT_EQ(1U, kept(two.switchEntry()));

  two.addPCIPath();
  pump().turn();
  EXPECT_THAT(log().take(), ElementsAre(lookingForPort(), lookingForBridge(),
                                        message("ThunderboltDevice:: Cannot create entry")));
  EXPECT_EQ(0U, kept(two.switchEntry()));
  EXPECT_EQ(1U, kept(two.upstreamPort()));

  two.addUpstreamBridge();
  pump().turn();
  EXPECT_THAT(log().take(), ElementsAre(lookingForBridge()));
  EXPECT_EQ("the Complete Path is \n\n", output());

  two.addBridges().addDisks({1, 2}).addSet({"SET", {1, 2}});
  pump().turn();
  EXPECT_THAT(log().take(),
              ElementsAre(lookingForBridge(), bridgeFound(two.bridgePath()), lookingForDisks()));
  EXPECT_EQ(0U, kept(two.upstreamPort()));
  EXPECT_EQ(1U, device->raidVolumes().size());

  pump().turns(5);
  EXPECT_THAT(log().lines(), IsEmpty());
  EXPECT_EQ(0U, application().queuedEvents());
  expectKept(two.bridge(), 1 + 1 + keptAtFirstSight(2));
}

TEST_F(BringUp, RetriesCarryTheReferenceAndNeverHoldMoreThanOne) {
  two.addSwitch();
  const HeldDevice device(UID);
  for (int turn = 0; turn < 20; ++turn) {
    ASSERT_EQ(1U, kept(two.switchEntry()));
    ASSERT_EQ(1U, application().queuedEvents());
    pump().turn();
  }
  two.addPCIPath();
  for (int turn = 0; turn < 20; ++turn) {
    pump().turn();
    ASSERT_EQ(0U, kept(two.switchEntry()));
    ASSERT_EQ(1U, kept(two.upstreamPort()));
    ASSERT_EQ(1U, application().queuedEvents());
  }
  EXPECT_EQ(0U, MemoryRegistry::accounts().iterators);
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

TEST_F(BringUp, TwoDevicesComeUpSideBySide) {
  TestSupport::EnclosureBuilder other(host, TestSupport::fiveBay(UID + 1, 1));
  two.addSwitch();
  other.addSwitch();
  const HeldDevice first(UID);
  const HeldDevice second(UID + 1);
  EXPECT_EQ(2U, application().queuedEvents());
  other.complete().addDisk(3);
  two.complete().addDisk(1);
  pump().turn();
  EXPECT_EQ(two.bridgePath(), first->pciBridgePath());
  EXPECT_EQ(other.bridgePath(), second->pciBridgePath());
  EXPECT_EQ(0U, application().queuedEvents());
  expectKept(two.bridge(), 2);
  expectKept(other.bridge(), 2);
}

TEST_F(BringUp, ADeviceThatEndsInTheMiddleTakesItsEventWithItAndLeavesTheOthers) {
  TestSupport::EnclosureBuilder other(host, TestSupport::fiveBay(UID + 1, 1));
  two.addSwitch();
  other.addSwitch().addPCIPath();
  HeldDevice first(UID);
  const HeldDevice second(UID + 1);
  first.drop();
  EXPECT_EQ(1U, application().queuedEvents());
  EXPECT_EQ(0U, kept(two.switchEntry()));
  EXPECT_EQ(1U, kept(other.upstreamPort()));
}

}  // namespace
}  // namespace RAIDMonitoring
