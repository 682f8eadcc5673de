#include <gmock/gmock.h>

#include <ostream>

#include "tests/monitor/MonitorFixture.h"

// One host's volumes in the refresh cycle: which change yields which event, and in which order.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::info;
using TestSupport::nameOf;

const auto NewError =
    info(" RAIDMonitor::refresh() - New error detected on RAID.", "Quovex Raid Monitor");

constexpr RAIDVolumeState States[] = {VolumeCrossDevice, VolumeUnknown,      VolumeFailed,
                                      VolumeTerminating, VolumeInitializing, VolumeOnline,
                                      VolumeDegraded,    VolumeOffline};

// One volume on one host, from one state to another.
struct Change {
  bool announced;
  RAIDVolumeState before;
  RAIDVolumeState after;
  bool memberChanges;
};

std::ostream& operator<<(std::ostream& stream, const Change& change) {
  return stream << (change.announced ? "announced, " : "not announced, ") << nameOf(change.before)
                << " to " << nameOf(change.after)
                << (change.memberChanges ? ", a member changes" : "");
}

// What is to be told of it.
Story eventsOf(const Change& change) {
  const Story none;
  const std::string after = nameOf(change.after);
  if (!change.announced) return change.after == VolumeUnknown ? none : Story{"appeared A " + after};
  if (change.before != change.after) {
    if (change.after == VolumeUnknown) return {"disappeared A"};
    return {"updated A " + after, "updated A " + after};
  }
  const bool watched = change.after == VolumeDegraded || change.after == VolumeOffline;
  return watched && change.memberChanges ? Story{"updated A " + after} : none;
}

std::size_t linesOf(const Change& change) {
  const bool stays = change.announced && change.before == change.after;
  return stays && change.memberChanges && eventsOf(change).size() == 1 ? 1 : 0;
}

int referencesAfter(const Change& change) {
  const bool withdrawn =
      change.announced && change.before != change.after && change.after == VolumeUnknown;
  const bool known = change.announced ? !withdrawn : change.after != VolumeUnknown;
  return known ? Scene::Announced : Scene::Filed;
}

class RefreshEventsTest : public TestSupport::RegistryFixture {
 protected:
  void expectEvents(const Change& change) {
    Scene scene;
    auto* host = scene.makeHost(1);
    if (!change.announced) scene.appear(host);
    auto* volume = scene.file(host, "A");
    auto* member = addMember(volume, "M", MemberOnline);
    if (change.announced) scene.appear(host);
    volume->setState(change.before);
    scene.told();
    log().clear();
    host->onRefresh([&] {
      volume->setState(change.after);
      if (change.memberChanges) member->setState(MemberFailed);
    });
    scene.monitor().refresh();
    EXPECT_EQ(eventsOf(change), scene.told()) << change;
    EXPECT_EQ(linesOf(change), log().count(NewError)) << change;
    EXPECT_EQ(linesOf(change), log().lines().size()) << change;
    EXPECT_EQ(referencesAfter(change), volume->references()) << change;
  }
};

TEST_F(RefreshEventsTest, EachChangeOfStateYieldsItsEvents) {
  for (const bool announced : {false, true}) {
    for (const auto before : States) {
      for (const auto after : States) {
        for (const bool memberChanges : {false, true})
          expectEvents({announced, before, after, memberChanges});
      }
    }
  }
}

class RAIDMonitorRefreshTest : public MonitorFixture {
 protected:
  RAIDMonitorRefreshTest() : host(scene.makeHost(1)) {}

  // The host with what is filed on it by now; what that yields is not of interest here.
  void appear() {
    scene.appear(host);
    scene.told();
    log().clear();
  }

  ScriptedHost* host;
};

TEST_F(RAIDMonitorRefreshTest, WithNothingThereNothingHappens) {
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(RAIDMonitorRefreshTest, AVolumeFromOnlineToDegradedIsReportedTwiceInTheCycle) {
  auto* volume = scene.file(host, "A");
  appear();
  host->onRefresh([&] { volume->setState(VolumeDegraded); });
  scene.monitor().refresh();
  EXPECT_EQ((Story{"updated A degraded", "updated A degraded"}), scene.told());
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(Scene::Announced, volume->references());
}

TEST_F(RAIDMonitorRefreshTest, AnAppearanceIsReportedOnce) {
  appear();
  host->onRefresh([&] {
    if (host->raidVolumes().empty()) scene.file(host, "A");
  });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"appeared A online"}, scene.told());
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
}

TEST_F(RAIDMonitorRefreshTest, EventsComeAtOnceThenUpdatesAgainThenWithdrawalsEachInOrder) {
  auto* a = scene.file(host, "A");
  auto* b = scene.file(host, "B");
  auto* c = scene.file(host, "C");
  auto* d = scene.file(host, "D");
  auto* f = scene.file(host, "F");
  auto* g = scene.file(host, "G", VolumeDegraded);
  auto* member = addMember(g, "M");
  appear();
  host->onRefresh([&] {
    b->setState(VolumeDegraded);
    a->setState(VolumeOffline);
    host->removeRAIDVolume(d);
    host->removeRAIDVolume(c);
    scene.file(host, "E");
    f->setState(VolumeUnknown);
    member->setState(MemberFailed);
  });
  scene.monitor().refresh();
  EXPECT_EQ((Story{"updated A offline", "updated B degraded", "appeared E online", "disappeared F",
                   "updated A offline", "updated B degraded", "updated G degraded", "disappeared C",
                   "disappeared D"}),
            scene.told());
  EXPECT_EQ(Scene::Filed, f->references());
  EXPECT_EQ(1, c->references());
}

TEST_F(RAIDMonitorRefreshTest, AnAnnouncedVolumeThatIsNoLongerListedIsWithdrawnAndReleased) {
  auto* volume = scene.file(host, "A");
  appear();
  host->onRefresh([&] { host->removeRAIDVolume(volume); });
  int references = 0;
  scene.client().onEvent([&](const std::string&, RAIDVolume* gone) {
    EXPECT_EQ(volume, gone);
    references = gone->references();
  });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(2, references) << "held to the end of the callback: the scene's and the monitor's";
  EXPECT_EQ(1, volume->references());
  host->onRefresh({});
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
}

TEST_F(RAIDMonitorRefreshTest, TheRecordedObjectIsWithdrawnWhateverItsState) {
  auto* volume = scene.file(host, "A");
  appear();
  host->onRefresh([&] {
    volume->setState(VolumeUnknown);
    host->removeRAIDVolume(volume);
  });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
}

TEST_F(RAIDMonitorRefreshTest, WithNoHostsEveryAnnouncedVolumeIsWithdrawnInOrder) {
  std::vector<RAIDVolume*> volumes;
  for (const char* uuid : {"B", "C", "A"}) {
    volumes.push_back(scene.makeVolume(host, uuid));
    scene.monitor().notifyRAIDApparition(volumes.back());
  }
  scene.told();
  scene.monitor().refresh();
  EXPECT_EQ((Story{"disappeared A", "disappeared B", "disappeared C"}), scene.told());
  for (auto* volume : volumes)
    EXPECT_EQ(1, volume->references());
}

TEST_F(RAIDMonitorRefreshTest, AnAnnouncedVolumeUnknownBeforeAndAfterStaysAnnounced) {
  auto* volume = scene.file(host, "A");
  appear();
  volume->setState(VolumeUnknown);
  scene.monitor().refresh();
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(Scene::Announced, volume->references());
  host->onRefresh([&] { volume->setState(VolumeOnline); });
  scene.monitor().refresh();
  EXPECT_EQ((Story{"updated A online", "updated A online"}), scene.told());
}

TEST_F(RAIDMonitorRefreshTest, AVolumeThatTurnedUnknownAppearsAgainWhenItIsKnown) {
  auto* volume = scene.file(host, "A");
  appear();
  host->onRefresh([&] { volume->setState(VolumeUnknown); });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(Scene::Filed, volume->references());
  host->onRefresh([&] { volume->setState(VolumeFailed); });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"appeared A failed"}, scene.told());
  EXPECT_EQ(Scene::Announced, volume->references());
}

TEST_F(RAIDMonitorRefreshTest, AnAnnouncedVolumeFirstListedAfterTheRefreshCountsAsFailedBefore) {
  for (const auto state : States) {
    auto* volume = scene.makeVolume(host, "A", state);
    scene.monitor().notifyRAIDApparition(volume);
    appear();
    host->onRefresh([&] { host->addRAIDVolume(volume); });
    scene.monitor().refresh();
    const std::string update = "updated A " + nameOf(state);
    EXPECT_EQ(state == VolumeFailed    ? Story{}
              : state == VolumeUnknown ? Story{"disappeared A"}
                                       : (Story{update, update}),
              scene.told())
        << nameOf(state);
    host->onRefresh({});
    host->removeRAIDVolume(volume);
    scene.disappear(host);
    scene.monitor().refresh();
    EXPECT_EQ(1, volume->references()) << nameOf(state);
  }
}

TEST_F(RAIDMonitorRefreshTest, AStateChangedBetweenCyclesByAnyoneElseCountsAsTheOldOne) {
  auto* volume = scene.file(host, "A");
  appear();
  volume->setState(VolumeDegraded);
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  host->onRefresh([&] { volume->setState(VolumeOnline); });
  scene.monitor().refresh();
  EXPECT_EQ((Story{"updated A online", "updated A online"}), scene.told());
}

TEST_F(RAIDMonitorRefreshTest, AnotherObjectUnderAnAnnouncedUUIDIsComparedWithTheOneBefore) {
  auto* old = scene.file(host, "A");
  appear();
  auto* fresh = scene.makeVolume(host, "A", VolumeOnline);
  host->onRefresh([&] {
    host->removeRAIDVolume(old);
    host->addRAIDVolume(fresh);
  });
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(2, old->references()) << "still the recorded one";
  EXPECT_EQ(Scene::Filed, fresh->references());
}

TEST_F(RAIDMonitorRefreshTest, UpdatesAreToldOfTheObjectThatChanged) {
  auto* volume = scene.file(host, "A");
  appear();
  std::vector<RAIDVolume*> told;
  scene.client().onEvent([&](const std::string&, RAIDVolume* it) { told.push_back(it); });
  host->onRefresh([&] { volume->setState(VolumeOffline); });
  scene.monitor().refresh();
  EXPECT_THAT(told, ElementsAre(volume, volume));
}

TEST_F(RAIDMonitorRefreshTest, NothingButTheNewErrorIsEverLogged) {
  auto* volume = scene.file(host, "A");
  appear();
  host->onRefresh([&] { volume->setState(VolumeFailed); });
  scene.monitor().refresh();
  host->onRefresh([&] { host->removeRAIDVolume(volume); });
  scene.monitor().refresh();
  EXPECT_THAT(log().lines(), IsEmpty());
}

}  // namespace
}  // namespace MonitorTest
