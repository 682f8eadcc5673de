#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <tuple>

#include "tests/monitor/MonitorFixture.h"

// Several hosts in one refresh cycle, and sets that more than one of them reports. `first` and
// `second` are in the order in which the monitor looks at them, whatever their addresses.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;

class RAIDMonitorHostsTest : public MonitorFixture {
 protected:
  RAIDMonitorHostsTest() {
    std::tie(first, second) = scene.makeTwoHosts();
    scene.client().onEvent(
        [this](const std::string&, RAIDVolume* volume) { objects.push_back(volume); });
  }

  // Both hosts with what is filed on them, the first one first; what that yields is not of
  // interest.
  void appear() {
    scene.appear(first);
    scene.appear(second);
    take();
  }

  // What the client was told since it was last asked; `objects` begins anew.
  Story take() {
    objects.clear();
    return scene.told();
  }

  ScriptedHost* first = nullptr;
  ScriptedHost* second = nullptr;
  std::vector<RAIDVolume*> objects;  // of the callbacks
};

TEST_F(RAIDMonitorHostsTest, EachHostIsRefreshedOnceInTheOrderOfTheSet) {
  std::vector<ScriptedHost*> order;
  first->onRefresh([&] { order.push_back(first); });
  second->onRefresh([&] { order.push_back(second); });
  scene.appear(second);
  scene.appear(first);
  scene.monitor().refresh();
  EXPECT_THAT(order, ElementsAre(first, second));
}

TEST_F(RAIDMonitorHostsTest, OneHostsEventsComeBeforeTheNextHostIsRefreshed) {
  auto* volume = scene.file(first, "A");
  appear();
  first->onRefresh([&] { volume->setState(VolumeDegraded); });
  Story before;
  second->onRefresh([&] { before = scene.client().story(); });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"updated A degraded"}, before);
}

TEST_F(RAIDMonitorHostsTest, OldStatesAreTakenJustBeforeTheHostsOwnRefresh) {
  auto* volume = scene.file(second, "A");
  appear();
  first->onRefresh([&] { volume->setState(VolumeDegraded); });
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
}

TEST_F(RAIDMonitorHostsTest, UpdatesAtTheEndComeInOrderOfUUIDsOverAllHosts) {
  auto* b = scene.file(first, "B");
  auto* a = scene.file(second, "A");
  appear();
  first->onRefresh([&] { b->setState(VolumeOffline); });
  second->onRefresh([&] { a->setState(VolumeOffline); });
  scene.monitor().refresh();
  EXPECT_EQ(
      (Story{"updated B offline", "updated A offline", "updated A offline", "updated B offline"}),
      scene.told());
}

TEST_F(RAIDMonitorHostsTest, ASecondVolumeWithASeenUUIDIsMarkedAndReportedAtTheEnd) {
  auto* seen = scene.file(first, "A");
  auto* marked = scene.file(second, "A");
  appear();
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(marked));
  EXPECT_EQ(Story{"updated A cross-device"}, take());
  EXPECT_EQ(VolumeCrossDevice, marked->state());
  EXPECT_EQ(VolumeOnline, seen->state());
  EXPECT_EQ(Scene::Announced, seen->references());
  EXPECT_EQ(Scene::Filed, marked->references());
}

TEST_F(RAIDMonitorHostsTest, ItIsTheSecondOneThatIsMarkedEvenWhenTheSecondWasAnnounced) {
  auto* seen = scene.file(first, "A");
  auto* marked = scene.file(second, "A");
  scene.appear(second);
  scene.appear(first);
  EXPECT_THAT(objects, ElementsAre(marked));
  take();
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(marked));
  EXPECT_EQ(Story{"updated A cross-device"}, take());
  EXPECT_EQ(VolumeOnline, seen->state());
  EXPECT_EQ(Scene::Filed, seen->references());
  EXPECT_EQ(Scene::Announced, marked->references());
}

TEST_F(RAIDMonitorHostsTest, TheMarkIsReportedAgainInEveryCycle) {
  scene.file(first, "A");
  scene.file(second, "A");
  appear();
  for (int cycle = 0; cycle < 3; ++cycle) {
    scene.monitor().refresh();
    EXPECT_EQ(Story{"updated A cross-device"}, take()) << "cycle " << cycle;
  }
}

TEST_F(RAIDMonitorHostsTest, AMarkThatTheHostReadsOverIsAChangeAndIsSetAgain) {
  scene.file(first, "A");
  auto* marked = scene.file(second, "A");
  appear();
  second->onRefresh([&] { marked->setState(VolumeOnline); });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"updated A cross-device"}, take());
  for (int cycle = 1; cycle < 3; ++cycle) {
    scene.monitor().refresh();
    EXPECT_EQ((Story{"updated A online", "updated A cross-device"}), take()) << cycle;
    EXPECT_EQ(VolumeCrossDevice, marked->state());
  }
}

TEST_F(RAIDMonitorHostsTest, TheMarkedVolumeReplacesTheFirstOneAmongTheUpdates) {
  auto* seen = scene.file(first, "A");
  auto* marked = scene.file(second, "A");
  appear();
  first->onRefresh([&] { seen->setState(VolumeDegraded); });
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(seen, marked));
  EXPECT_EQ((Story{"updated A degraded", "updated A cross-device"}), take());
}

TEST_F(RAIDMonitorHostsTest, AThirdHostsVolumeIsMarkedTooAndTheLastOneIsReported) {
  std::vector<ScriptedHost*> hosts = {first, second, scene.makeHost(3)};
  std::sort(hosts.begin(), hosts.end(), std::less<>());
  std::vector<RAIDVolume*> volumes;
  for (auto* host : hosts) {
    volumes.push_back(scene.file(host, "A"));
    scene.appear(host);
  }
  take();
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(volumes[2]));
  EXPECT_EQ(VolumeOnline, volumes[0]->state());
  EXPECT_EQ(VolumeCrossDevice, volumes[1]->state());
  EXPECT_EQ(VolumeCrossDevice, volumes[2]->state());
}

TEST_F(RAIDMonitorHostsTest, ASecondVolumeThatTurnsUnknownIsThePassedInOneThatIsReleased) {
  auto* recorded = scene.file(first, "A");
  auto* passed = scene.file(second, "A");
  appear();
  second->onRefresh([&] { passed->setState(VolumeUnknown); });
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(passed, passed));
  EXPECT_EQ((Story{"disappeared A", "updated A cross-device"}), take());
  EXPECT_EQ(Scene::Announced, recorded->references()) << "keeps the monitor's reference";
  EXPECT_EQ(Scene::Filed - 1, passed->references()) << "loses one that was not the monitor's";
  passed->ref();

  // The UUID has left the record: the next cycle announces it anew.
  second->onRefresh({});
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(recorded, passed));
  EXPECT_EQ((Story{"appeared A online", "updated A cross-device"}), take());
  EXPECT_EQ(Scene::Announced + 1, recorded->references());
  recorded->deref();
}

TEST_F(RAIDMonitorHostsTest, AFirstVolumeThatTurnsUnknownIsAnnouncedThroughTheSecondHost) {
  auto* unknown = scene.file(first, "A");
  auto* other = scene.file(second, "A");
  appear();
  first->onRefresh([&] { unknown->setState(VolumeUnknown); });
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(unknown, other, other));
  EXPECT_EQ((Story{"disappeared A", "appeared A online", "updated A cross-device"}), take());
  EXPECT_EQ(Scene::Filed, unknown->references());
  EXPECT_EQ(Scene::Announced, other->references());
}

TEST_F(RAIDMonitorHostsTest, AnUnknownVolumeThatIsNotAnnouncedCountsAsSeen) {
  scene.file(first, "A", VolumeUnknown);
  auto* other = scene.file(second, "A", VolumeUnknown);
  appear();
  other->setState(VolumeDegraded);
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(other, other));
  EXPECT_EQ((Story{"appeared A degraded", "updated A cross-device"}), take());
  EXPECT_EQ(VolumeCrossDevice, other->state());
}

TEST_F(RAIDMonitorHostsTest, ASetThatMovesToAnotherHostIsUpdatedAndNotWithdrawn) {
  for (const bool toTheSecond : {true, false}) {
    auto* from = toTheSecond ? first : second;
    auto* to = toTheSecond ? second : first;
    auto* recorded = scene.file(from, "A");
    auto* moved = scene.makeVolume(to, "A");
    appear();
    from->onRefresh([&] { from->removeRAIDVolume(recorded); });
    to->onRefresh([&] { to->addRAIDVolume(moved); });
    scene.monitor().refresh();
    EXPECT_THAT(objects, ElementsAre(moved, moved));
    EXPECT_EQ((Story{"updated A online", "updated A online"}), take());
    EXPECT_EQ(2, recorded->references()) << "still on record: the scene's and the monitor's";
    EXPECT_EQ(Scene::Filed, moved->references());

    from->onRefresh({});
    to->onRefresh([&] { to->removeRAIDVolume(moved); });
    scene.monitor().refresh();
    EXPECT_THAT(objects, ElementsAre(recorded)) << "what is on record is withdrawn";
    EXPECT_EQ(Story{"disappeared A"}, take());
    EXPECT_EQ(1, recorded->references());
    EXPECT_EQ(1, moved->references());
    to->onRefresh({});
    scene.disappear(first);
    scene.disappear(second);
  }
}

TEST_F(RAIDMonitorHostsTest, ASetThatAnotherHostStillReportsIsNotWithdrawn) {
  auto* recorded = scene.file(first, "A");
  auto* other = scene.file(second, "A");
  appear();
  first->onRefresh([&] { first->removeRAIDVolume(recorded); });
  scene.monitor().refresh();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(VolumeOnline, other->state()) << "the only one that is met";
  EXPECT_EQ(2, recorded->references());
  first->onRefresh({});
  second->onRefresh([&] { second->removeRAIDVolume(other); });
  scene.monitor().refresh();
  EXPECT_THAT(objects, ElementsAre(recorded));
  EXPECT_EQ(Story{"disappeared A"}, take());
}

TEST_F(RAIDMonitorHostsTest, TheMembersOfEachHostAreComparedOnTheirOwn) {
  auto* one = scene.file(first, "ONE", VolumeDegraded);
  auto* two = scene.file(second, "TWO", VolumeDegraded);
  addMember(one, "M", MemberOnline);
  auto* changing = addMember(two, "N", MemberOnline);
  appear();
  log().clear();
  second->onRefresh([&] { changing->setState(MemberFailed); });
  scene.monitor().refresh();
  EXPECT_EQ(Story{"updated TWO degraded"}, take());
  EXPECT_EQ(1U, log().lines().size());
}

}  // namespace
}  // namespace MonitorTest
