#include <gmock/gmock.h>

#include "model/RAIDHost.h"
#include "model/RAIDMember.h"
#include "tests/monitor/StagedFixture.h"

// A set whose two members are in two enclosures, so that both hosts report it. Which host the
// monitor looks at first depends on the addresses; the tests do not.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::SizeIs;
using TestSupport::EnclosureBuilder;
using TestSupport::EntryID;
using TestSupport::twoBay;

class SpanningSetTest : public StagedFixture {
 protected:
  SpanningSetTest() {
    for (auto* enclosure : {&one, &two})
      enclosure->complete().addDisk(1).addMember(1, "SPAN");
    set = TestSupport::addEntry(
        one.member(1), "AppleRAIDConcatSet", "", "",
        {{"AppleRAID-SetUUID", "SPAN"},
         {"AppleRAID-SetName", "Wide"},
         {"AppleRAID-SetStatus", "Online"},
         {"AppleRAID-LevelName", "Concat"},
         {"AppleRAID-Members", MemoryRegistry::Array{one.memberUUID(1), two.memberUUID(1)}}});
    MemoryRegistry::attach(set, two.member(1));
    plugIn(one);
    plugIn(two);
  }

  // So many refreshes with both hosts there. Both know the set, under one member each.
  void expectRefreshes(std::uint64_t count) {
    for (auto* enclosure : {&one, &two})
      expectKept(enclosure->bridge(), 3 + count * 4);
  }

  RAIDVolume* volumeOf(std::size_t place) {
    return monitor().raidHosts().at(place)->raidVolumes().at(0);
  }

  EnclosureBuilder one{tree(), twoBay(1, 0)};
  EnclosureBuilder two{tree(), twoBay(2, 1)};
  EntryID set = 0;
};

TEST_F(SpanningSetTest, IsAnnouncedOnceThoughBothHostsHaveIt) {
  EXPECT_EQ(Story{"appeared SPAN online"}, told());
  EXPECT_EQ(VolumeOnline, volumeOf(0)->state());
  EXPECT_EQ(VolumeOnline, volumeOf(1)->state());
  expectRefreshes(0);
}

TEST_F(SpanningSetTest, EachHostFindsItsOwnMemberOnly) {
  for (std::size_t place : {0U, 1U}) {
    int missing = 0;
    for (auto* member : volumeOf(place)->members())
      missing += member->state() == MemberNotFound ? 1 : 0;
    EXPECT_THAT(volumeOf(place)->members(), SizeIs(2));
    EXPECT_EQ(1, missing);
  }
  expectRefreshes(0);
}

TEST_F(SpanningSetTest, TheSecondHostsVolumeIsMarkedAtTheEndOfTheFirstCycle) {
  told();
  EXPECT_EQ(Story{"updated SPAN cross-device"}, refresh());
  EXPECT_EQ(VolumeOnline, volumeOf(0)->state());
  EXPECT_EQ(VolumeCrossDevice, volumeOf(1)->state());
  EXPECT_EQ(volumeOf(1), lastTold());
  expectRefreshes(1);
}

TEST_F(SpanningSetTest, TheMarkIsReadOverByEveryCycleAndSetAgain) {
  refresh();
  for (int cycle = 0; cycle < 3; ++cycle) {
    EXPECT_EQ((Story{"updated SPAN online", "updated SPAN cross-device"}), refresh()) << cycle;
    EXPECT_EQ(VolumeCrossDevice, volumeOf(1)->state());
  }
  expectRefreshes(4);
}

TEST_F(SpanningSetTest, AChangeOfStatusIsReportedOfBothObjectsAndOfTheMarkedOneAtTheEnd) {
  refresh();
  MemoryRegistry::setProperty(set, "AppleRAID-SetStatus", "Offline");
  EXPECT_EQ((Story{"updated SPAN offline", "updated SPAN offline", "updated SPAN cross-device"}),
            refresh());
  expectRefreshes(2);
}

TEST_F(SpanningSetTest, WithoutAKnownStatusTheMarkStaysAndIsReportedOnceACycle) {
  refresh();
  MemoryRegistry::setProperty(set, "AppleRAID-SetStatus", "Other");
  for (int cycle = 0; cycle < 2; ++cycle)
    EXPECT_EQ(Story{"updated SPAN cross-device"}, refresh()) << cycle;
  expectRefreshes(3);
}

TEST_F(SpanningSetTest, LeavesThroughEitherHostAsThatHostsObjectAndIsAnnouncedAnewByTheOther) {
  told();
  RAIDVolume* recorded = lastTold();  // the first device's
  RAIDVolume* other = volumeOf(0) == recorded ? volumeOf(1) : volumeOf(0);
  other->ref();  // so that there is something to look at
  expectRefreshes(0);
  discovery().deviceDisappeared({2, 4});
  EXPECT_EQ(Story{"disappeared SPAN"}, told());
  EXPECT_EQ(other, lastTold());
  EXPECT_EQ(2, references(recorded)) << "the host's and the monitor's";
  EXPECT_EQ(1, references(other)) << "only the test's: its host's was given back, and left behind";
  EXPECT_EQ(Story{"appeared SPAN online"}, refresh());
  EXPECT_EQ(recorded, lastTold());
  EXPECT_EQ(3, references(recorded));
  expectKept(one.bridge(), 4);
}

TEST_F(SpanningSetTest, WhenTheAnnouncingHostLeavesTheOtherAnnouncesItAnew) {
  RAIDVolume* recorded = lastTold();
  told();
  expectRefreshes(0);
  discovery().deviceDisappeared({1, 4});
  EXPECT_EQ(Story{"disappeared SPAN"}, told());
  EXPECT_EQ(recorded, lastTold());
  EXPECT_EQ(Story{"appeared SPAN online"}, refresh());
  EXPECT_NE(recorded, lastTold());
  EXPECT_THAT(monitor().raidHosts(), SizeIs(1));
  expectKept(two.bridge(), 4);
}

}  // namespace
}  // namespace MonitorTest
