#include <gmock/gmock.h>

#include "tests/monitor/MonitorFixture.h"

// The monitor's list of clients.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using TestSupport::RecordingClient;

class RAIDMonitorClientsTest : public TestSupport::RegistryFixture {
 protected:
  std::vector<int> places() {
    return {monitor.indexOfClient(&a), monitor.indexOfClient(&b), monitor.indexOfClient(&c)};
  }

  ~RAIDMonitorClientsTest() override { monitor.shutdown(); }

  ScriptedMonitor monitor;
  Story story;
  RecordingClient a{"a", story};
  RecordingClient b{"b", story};
  RecordingClient c{"c", story};
};

TEST_F(RAIDMonitorClientsTest, OnAnEmptyListNobodyHasAPlace) {
  EXPECT_THAT(places(), ElementsAre(-1, -1, -1));
  EXPECT_EQ(-1, monitor.indexOfClient(nullptr));
}

TEST_F(RAIDMonitorClientsTest, ClientsHavePlacesInTheOrderOfRegistration) {
  monitor.addClient(&c);
  monitor.addClient(&a);
  monitor.addClient(&b);
  EXPECT_THAT(places(), ElementsAre(1, 2, 0));
}

TEST_F(RAIDMonitorClientsTest, AddingOrRemovingNullChangesNothing) {
  monitor.addClient(nullptr);
  EXPECT_EQ(-1, monitor.indexOfClient(nullptr));
  monitor.addClient(&a);
  monitor.addClient(nullptr);
  monitor.addClient(&b);
  monitor.removeClient(nullptr);
  EXPECT_THAT(places(), ElementsAre(0, 1, -1));
  EXPECT_EQ(-1, monitor.indexOfClient(nullptr));
}

TEST_F(RAIDMonitorClientsTest, AddingTwiceLeavesOneEntryAtTheFirstPlace) {
  monitor.addClient(&a);
  monitor.addClient(&b);
  monitor.addClient(&a);
  monitor.addClient(&c);
  EXPECT_THAT(places(), ElementsAre(0, 1, 2));
  monitor.removeClient(&a);
  EXPECT_THAT(places(), ElementsAre(-1, 0, 1));
}

TEST_F(RAIDMonitorClientsTest, RemovingTheMiddleOneOfThreeKeepsTheOrderOfTheOthers) {
  monitor.addClient(&a);
  monitor.addClient(&b);
  monitor.addClient(&c);
  monitor.removeClient(&b);
  EXPECT_THAT(places(), ElementsAre(0, -1, 1));
}

TEST_F(RAIDMonitorClientsTest, RemovingAClientThatIsNotThereChangesNothing) {
  monitor.addClient(&a);
  monitor.addClient(&b);
  monitor.removeClient(&c);
  EXPECT_THAT(places(), ElementsAre(0, 1, -1));
}

TEST_F(RAIDMonitorClientsTest, ARemovedClientThatIsAddedAgainComesLast) {
  monitor.addClient(&a);
  monitor.addClient(&b);
  monitor.removeClient(&a);
  monitor.addClient(&a);
  EXPECT_THAT(places(), ElementsAre(1, 0, -1));
}

using ClientOrderTest = MonitorFixture;

TEST_F(ClientOrderTest, EveryCallbackGoesToAllClientsInTheOrderOfRegistration) {
  Story story;
  RecordingClient first("first", story);
  RecordingClient second("second", story);
  RecordingClient never("never", story);
  scene.monitor().addClient(&first);
  scene.monitor().addClient(&never);
  scene.monitor().addClient(&second);
  scene.monitor().removeClient(&never);
  auto* volume = scene.makeVolume(scene.makeHost(1), "A");
  scene.monitor().notifyRAIDApparition(volume);
  scene.monitor().notifyRAIDUpdate(volume);
  scene.monitor().notifyRAIDDisparition(volume);
  EXPECT_THAT(story, ElementsAre("first appeared A online", "second appeared A online",
                                 "first updated A online", "second updated A online",
                                 "first disappeared A", "second disappeared A"));
}

TEST_F(ClientOrderTest, ARefreshTellsOneEventToAllClientsBeforeTheNext) {
  Story story;
  RecordingClient first("1", story);
  RecordingClient second("2", story);
  scene.monitor().addClient(&first);
  scene.monitor().addClient(&second);
  auto* host = scene.makeHost(1);
  auto* a = scene.file(host, "A");
  auto* b = scene.file(host, "B");
  scene.appear(host);
  story.clear();
  host->onRefresh([&] {
    a->setState(VolumeDegraded);
    b->setState(VolumeOffline);
  });
  scene.monitor().refresh();
  EXPECT_THAT(story,
              ElementsAre("1 updated A degraded", "2 updated A degraded", "1 updated B offline",
                          "2 updated B offline", "1 updated A degraded", "2 updated A degraded",
                          "1 updated B offline", "2 updated B offline"));
}

}  // namespace
}  // namespace MonitorTest
