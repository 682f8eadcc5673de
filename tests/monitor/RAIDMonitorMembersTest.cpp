#include <gmock/gmock.h>

#include "tests/monitor/MonitorFixture.h"

// Members that change their states while volumes stay degraded or offline.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;
using TestSupport::info;

const auto NewError =
    info(" RAIDMonitor::refresh() - New error detected on RAID.", "Quovex Raid Monitor");

constexpr MemberState MemberStates[] = {MemberNotFound, MemberUnknown, MemberOffline,
                                        MemberStandby,  MemberOnline,  MemberFailed};

class RAIDMonitorMembersTest : public MonitorFixture {
 protected:
  RAIDMonitorMembersTest()
      : host(scene.makeHost(1)), degraded(scene.file(host, "DEGRADED", VolumeDegraded)) {}

  // The host with what is filed on it by now; what that yields is not of interest here.
  void appear() {
    scene.appear(host);
    scene.told();
    log().clear();
  }

  // One cycle in which the host's refresh does this.
  void refresh(ScriptedHost::Script script) {
    log().clear();
    host->onRefresh(std::move(script));
    scene.monitor().refresh();
    host->onRefresh({});
  }

  void expectLines(std::size_t count) {
    EXPECT_THAT(log().lines(), SizeIs(count));
    EXPECT_THAT(log().lines(), Each(NewError));
  }

  ScriptedHost* host;
  RAIDVolume* degraded;
};

TEST_F(RAIDMonitorMembersTest, OneChangedMemberGivesOneLineAndOneUpdate) {
  auto* member = addMember(degraded, "M");
  appear();
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ(Story{"updated DEGRADED degraded"}, scene.told());
  expectLines(1);
}

TEST_F(RAIDMonitorMembersTest, TwoChangedMembersGiveTwoLinesAndOneUpdate) {
  auto* a = addMember(degraded, "A");
  auto* b = addMember(degraded, "B");
  addMember(degraded, "C");
  appear();
  refresh([&] {
    a->setState(MemberFailed);
    b->setState(MemberNotFound);
  });
  EXPECT_EQ(Story{"updated DEGRADED degraded"}, scene.told());
  expectLines(2);
}

TEST_F(RAIDMonitorMembersTest, EveryTwoDifferentMemberStatesAreAChange) {
  auto* member = addMember(degraded, "M");
  appear();
  for (const auto before : MemberStates) {
    for (const auto after : MemberStates) {
      member->setState(before);
      refresh([&] { member->setState(after); });
      EXPECT_EQ(before == after ? 0U : 1U, log().count(NewError)) << before << " to " << after;
      EXPECT_THAT(scene.told(), SizeIs(before == after ? 0 : 1)) << before << " to " << after;
    }
  }
}

TEST_F(RAIDMonitorMembersTest, AVolumeThatStaysOfflineIsWatchedToo) {
  auto* offline = scene.file(host, "OFFLINE", VolumeOffline);
  auto* member = addMember(offline, "M");
  degraded->setState(VolumeOnline);
  appear();
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ(Story{"updated OFFLINE offline"}, scene.told());
  expectLines(1);
}

TEST_F(RAIDMonitorMembersTest, AVolumeThatStaysOnlineWhileAMemberChangesGivesNothing) {
  degraded->setState(VolumeOnline);
  auto* member = addMember(degraded, "M");
  appear();
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_THAT(scene.told(), IsEmpty());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, AMemberOfAnotherVolumeOfTheHostCounts) {
  auto* online = scene.file(host, "ONLINE");
  auto* member = addMember(online, "M");
  addMember(degraded, "OWN");
  appear();
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ(Story{"updated DEGRADED degraded"}, scene.told());
  expectLines(1);
}

TEST_F(RAIDMonitorMembersTest, OneChangedMemberCountsForEveryVolumeThatStaysDegradedOrOffline) {
  scene.file(host, "OFFLINE", VolumeOffline);
  scene.file(host, "ONLINE");
  auto* member = addMember(degraded, "M");
  appear();
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ((Story{"updated DEGRADED degraded", "updated OFFLINE offline"}), scene.told());
  expectLines(2);
}

TEST_F(RAIDMonitorMembersTest, AMemberOfAVolumeThatIsNotAnnouncedCountsToo) {
  auto* unknown = scene.file(host, "UNKNOWN", VolumeUnknown);
  auto* member = addMember(unknown, "M");
  appear();
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ(Story{"updated DEGRADED degraded"}, scene.told());
  expectLines(1);
}

TEST_F(RAIDMonitorMembersTest, AMemberOnAnotherHostDoesNotCount) {
  auto* other = scene.makeHost(2);
  auto* member = addMember(scene.file(other, "ONLINE"), "M");
  addMember(degraded, "M");  // the UUID alone does not make it the same
  scene.appear(other);
  appear();
  other->onRefresh([&] { member->setState(MemberFailed); });
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, MembersThatComeOrGoAreNotCompared) {
  auto* leaving = addMember(degraded, "LEAVING");
  appear();
  refresh([&] {
    degraded->removeRAIDMember(leaving);
    addMember(degraded, "COMING", MemberFailed);
  });
  EXPECT_THAT(scene.told(), IsEmpty());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, AMemberIsComparedByUUIDAlsoWhenItIsAnotherObject) {
  auto* leaving = addMember(degraded, "M", MemberOnline);
  appear();
  refresh([&] {
    degraded->removeRAIDMember(leaving);
    addMember(degraded, "M", MemberFailed);
  });
  EXPECT_EQ(Story{"updated DEGRADED degraded"}, scene.told());
  expectLines(1);
}

TEST_F(RAIDMonitorMembersTest, UUIDsAreComparedWhole) {
  auto* member = addMember(degraded, "M-1", MemberOnline);
  appear();
  refresh([&] {
    degraded->removeRAIDMember(member);
    addMember(degraded, "M-11", MemberFailed);
    addMember(degraded, "M-", MemberFailed);
    addMember(degraded, "m-1", MemberFailed);
  });
  EXPECT_THAT(scene.told(), IsEmpty());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, OfTwoMembersWithAUUIDTheLastVolumesCounts) {
  auto* later = scene.file(host, "LATER");  // behind "DEGRADED"
  auto* first = addMember(degraded, "M");
  auto* last = addMember(later, "M");
  appear();
  refresh([&] { first->setState(MemberFailed); });
  EXPECT_THAT(scene.told(), IsEmpty());
  expectLines(0);
  refresh([&] { last->setState(MemberStandby); });
  EXPECT_EQ(Story{"updated DEGRADED degraded"}, scene.told());
  expectLines(1);
}

TEST_F(RAIDMonitorMembersTest, AChangeOfTheVolumeItselfIsReportedWithoutTheLine) {
  auto* member = addMember(degraded, "M");
  appear();
  refresh([&] {
    member->setState(MemberFailed);
    degraded->setState(VolumeOffline);
  });
  EXPECT_EQ((Story{"updated DEGRADED offline", "updated DEGRADED offline"}), scene.told());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, AVolumeThatIsNotAnnouncedAppearsWithoutTheLine) {
  scene.appear(scene.makeHost(2));
  degraded->setState(VolumeUnknown);
  auto* member = addMember(degraded, "M");
  appear();
  degraded->setState(VolumeDegraded);
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ(Story{"appeared DEGRADED degraded"}, scene.told());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, AMemberThatStaysAsItIsGivesNothingAnyMore) {
  auto* member = addMember(degraded, "M");
  appear();
  refresh([&] { member->setState(MemberFailed); });
  scene.told();
  refresh({});
  EXPECT_THAT(scene.told(), IsEmpty());
  expectLines(0);
}

TEST_F(RAIDMonitorMembersTest, TheLineComesBeforeTheUpdate) {
  auto* member = addMember(degraded, "M");
  appear();
  std::size_t lines = 0;
  scene.client().onEvent([&](const std::string&, RAIDVolume*) { lines = log().lines().size(); });
  refresh([&] { member->setState(MemberFailed); });
  EXPECT_EQ(1U, lines);
}

}  // namespace
}  // namespace MonitorTest
