#include <gmock/gmock.h>

#include "model/RAIDHost.h"
#include "model/RAIDMember.h"
#include "tests/monitor/StagedFixture.h"

// The monitor on whole enclosures: the road from the registry to the client.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::IsEmpty;
using testing::SizeIs;
using TestSupport::EnclosureBuilder;
using TestSupport::EntryID;
using TestSupport::info;
using TestSupport::twoBay;

constexpr std::uint64_t FirstUID = 0x00AA000000000001;

const auto NewError =
    info(" RAIDMonitor::refresh() - New error detected on RAID.", "Quovex Raid Monitor");

// What is kept on the bridge, on purpose. A bring-up with disks: one for the bridge's number that
// does not occur in its path, one for the search, and one for each volume that the search makes.
constexpr std::uint64_t keptByBringUp(std::uint64_t encounters) { return 1 + 1 + encounters; }
// A refresh of known sets: one for the search, and at each encounter with a set one for the set and
// one for each of its members.
constexpr std::uint64_t keptByRefresh(std::uint64_t encounters, std::uint64_t members) {
  return 1 + encounters * (1 + members);
}

class StagedMonitorTest : public StagedFixture {
 protected:
  StagedMonitorTest() { enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}}); }

  void expectRefreshes(std::uint64_t count) {
    expectKept(enclosure.bridge(), keptByBringUp(2) + count * keptByRefresh(2, 2));
  }

  RAIDVolume* volume() { return monitor().raidHosts().at(0)->raidVolumes().at(0); }

  EnclosureBuilder enclosure{tree(), twoBay(FirstUID)};
};

TEST_F(StagedMonitorTest, ADeviceThatIsFullyPresentIsAnnouncedAtItsArrival) {
  plugIn(enclosure);
  EXPECT_EQ(Story{"appeared SET online"}, told());
  EXPECT_EQ("Projects", volume()->name());
  EXPECT_EQ(LevelMirror, volume()->level());
  EXPECT_THAT(volume()->members(), SizeIs(2));
  expectRefreshes(0);
}

TEST_F(StagedMonitorTest, ASetUnderTwoMembersIsAnnouncedOnceAndItsHostHasOneVolume) {
  plugIn(enclosure);
  EXPECT_THAT(told(), SizeIs(1));
  EXPECT_THAT(monitor().raidHosts().at(0)->raidVolumes(), SizeIs(1));
  EXPECT_EQ(2, references(volume())) << "the host's and the monitor's";
  expectRefreshes(0);
}

TEST_F(StagedMonitorTest, EachRefreshLeavesAReferenceForTheSecondMemberThatTheSetHangsUnder) {
  plugIn(enclosure);
  auto* before = volume();
  for (int cycle = 1; cycle <= 3; ++cycle) {
    monitor().refresh();
    EXPECT_EQ(before, volume());
    EXPECT_EQ(2 + cycle, references(before));
  }
  EXPECT_EQ(Story{"appeared SET online"}, told());
  expectRefreshes(3);
}

TEST_F(StagedMonitorTest, ADeviceThatComesUpLaterIsAnnouncedByARefresh) {
  EnclosureBuilder late(tree(), twoBay(2, 1));
  late.addSwitch();
  plugIn(late);
  EXPECT_THAT(told(), IsEmpty());
  pump().turn();
  late.complete().addDisks({1, 2}).addSet({"LATE", {1}});
  pump().turn();
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_EQ(Story{"appeared LATE online"}, refresh());
  expectKept(late.bridge(), keptByBringUp(1) + keptByRefresh(1, 1));
}

TEST_F(StagedMonitorTest, ADeviceWhoseDisksComeAfterItsBridgeIsStillFoundByARefresh) {
  EnclosureBuilder late(tree(), twoBay(2, 1));
  late.complete();
  plugIn(late);
  late.addDisks({1, 2}).addSet({"LATE", {1, 2}});
  EXPECT_EQ(Story{"appeared LATE online"}, refresh());
  // The bring-up ended with the bridge in its hand; the refresh has made two volumes.
  expectKept(late.bridge(), 2 + 1 + 2);
}

TEST_F(StagedMonitorTest, TheTimerReportsChanges) {
  plugIn(enclosure);
  told();
  monitor().startMonitoring();
  pump().advance(1000);
  enclosure.setStatus("SET", "Degraded");
  pump().advance(999);
  EXPECT_THAT(told(), IsEmpty());
  pump().advance(1);
  EXPECT_EQ((Story{"updated SET degraded", "updated SET degraded"}), told());
  pump().advance(2000);
  EXPECT_THAT(told(), IsEmpty());
  monitor().stopMonitoring();
  enclosure.setStatus("SET", "Online");
  pump().advance(10000);
  EXPECT_THAT(told(), IsEmpty());
  expectRefreshes(2);
}

TEST_F(StagedMonitorTest, AMemberThatFailsInADegradedSetIsLoggedAndReportedOnce) {
  plugIn(enclosure);
  enclosure.setStatus("SET", "Degraded");
  refresh();
  enclosure.setMemberStatus(2, "Failed");
  log().clear();
  EXPECT_EQ(Story{"updated SET degraded"}, refresh());
  EXPECT_EQ(1U, log().count(NewError));
  EXPECT_THAT(log().lines(), SizeIs(1));
  expectRefreshes(2);
}

TEST_F(StagedMonitorTest, AMemberThatFailsTogetherWithItsSetIsReportedThroughTheSet) {
  plugIn(enclosure);
  told();
  enclosure.setStatus("SET", "Degraded");
  enclosure.setMemberStatus(2, "Failed");
  log().clear();
  EXPECT_EQ((Story{"updated SET degraded", "updated SET degraded"}), refresh());
  EXPECT_THAT(log().lines(), IsEmpty());
  expectRefreshes(1);
}

TEST_F(StagedMonitorTest, ASetThatLeavesTheRegistryIsWithdrawn) {
  plugIn(enclosure);
  told();
  enclosure.removeSet("SET");
  EXPECT_EQ(Story{"disappeared SET"}, refresh());
  EXPECT_EQ(0, references(lastTold())) << "the host's and the monitor's are given back";
  EXPECT_EQ(monitor().raidHosts().at(0), lastTold()->host());
  expectKept(enclosure.bridge(), keptByBringUp(2) + 1);
}

TEST_F(StagedMonitorTest, ASetWithoutAKnownStatusIsAnnouncedAsInitializing) {
  enclosure.setStatus("SET", "Rebuilding");
  plugIn(enclosure);
  EXPECT_EQ(Story{"appeared SET initializing"}, told());
  expectRefreshes(0);
}

TEST_F(StagedMonitorTest, AnEnclosureThatLeavesTakesItsSetsWithIt) {
  plugIn(enclosure);
  told();
  const EntryID bridge = enclosure.bridge();
  auto* gone = volume();
  unplug(enclosure);
  EXPECT_EQ(Story{"disappeared SET"}, told());
  EXPECT_EQ(gone, lastTold());
  EXPECT_EQ(1, references(gone)) << "the host that has ended leaves its reference behind";
  EXPECT_THAT(monitor().raidHosts(), IsEmpty());
  expectKept(bridge, keptByBringUp(2));
}

TEST_F(StagedMonitorTest, AnEnclosureThatHasLeftTheRegistryBeforeDiscoverySaysSoIsWithdrawnOnce) {
  plugIn(enclosure);
  told();
  const EntryID bridge = enclosure.bridge();
  enclosure.unplug();
  EXPECT_EQ(Story{"disappeared SET"}, refresh());
  discovery().deviceDisappeared({FirstUID, 4});
  EXPECT_THAT(told(), IsEmpty());
  expectKept(bridge, keptByBringUp(2));
}

TEST_F(StagedMonitorTest, AnEnclosureThatComesBackIsAnnouncedAnew) {
  plugIn(enclosure);
  expectKept(enclosure.bridge(), keptByBringUp(2));
  unplug(enclosure);
  told();
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  plugIn(enclosure);
  EXPECT_EQ(Story{"appeared SET online"}, told());
  expectRefreshes(0);
}

TEST_F(StagedMonitorTest, ADeviceOfAnotherTypeIsIgnored) {
  discovery().deviceAppeared({FirstUID, 3});
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_THAT(monitor().raidHosts(), IsEmpty());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(StagedMonitorTest, ADeviceOfAnotherTypeDoesNotMatchAHostWithItsIdentifier) {
  plugIn(enclosure);
  told();
  discovery().deviceDisappeared({FirstUID, 3});
  EXPECT_THAT(told(), IsEmpty());
  EXPECT_THAT(monitor().raidHosts(), SizeIs(1));
  expectRefreshes(0);
}

}  // namespace
}  // namespace MonitorTest
