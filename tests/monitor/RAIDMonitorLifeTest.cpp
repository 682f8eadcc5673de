#include <gmock/gmock.h>

#include <new>

#include "platform/pelago/DiscoveryManager.h"
#include "tests/monitor/MonitorFixture.h"

// A monitor's start, timer, discovery and end.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Pelago::Milliseconds Period = 2000;

class RAIDMonitorTimerTest : public MonitorFixture {
 protected:
  RAIDMonitorTimerTest() {
    auto* host = scene.makeHost(1);
    host->onRefresh([this] { times.push_back(application().now()); });
    scene.appear(host);
  }

  std::vector<Pelago::Milliseconds> times;  // of the refreshes
};

TEST_F(RAIDMonitorTimerTest, ANewMonitorIsNotStarted) {
  pump().advance(10 * Period);
  EXPECT_THAT(times, IsEmpty());
}

TEST_F(RAIDMonitorTimerTest, AStartedMonitorRefreshesOncePerPeriodOf2000) {
  scene.monitor().startMonitoring();
  EXPECT_THAT(times, IsEmpty());
  pump().advance(Period - 1);
  EXPECT_THAT(times, IsEmpty());
  pump().advance(2 * Period + 1);
  EXPECT_THAT(times, ElementsAre(2000, 4000, 6000));
}

TEST_F(RAIDMonitorTimerTest, AStoppedMonitorDoesNotRefresh) {
  scene.monitor().startMonitoring();
  pump().advance(Period);
  scene.monitor().stopMonitoring();
  pump().advance(10 * Period);
  EXPECT_THAT(times, ElementsAre(2000));
}

TEST_F(RAIDMonitorTimerTest, StoppingWithoutAStartAndTwiceIsHarmless) {
  scene.monitor().stopMonitoring();
  scene.monitor().startMonitoring();
  scene.monitor().stopMonitoring();
  scene.monitor().stopMonitoring();
  pump().advance(Period);
  EXPECT_THAT(times, IsEmpty());
}

TEST_F(RAIDMonitorTimerTest, AMonitorCanBeStartedAgain) {
  scene.monitor().startMonitoring();
  scene.monitor().stopMonitoring();
  pump().advance(500);
  scene.monitor().startMonitoring();
  pump().advance(Period);
  EXPECT_THAT(times, ElementsAre(2500));
}

TEST_F(RAIDMonitorTimerTest, StartingARunningMonitorBeginsThePeriodAnew) {
  scene.monitor().startMonitoring();
  pump().advance(1500);
  scene.monitor().startMonitoring();
  pump().advance(Period);
  EXPECT_THAT(times, ElementsAre(3500));
}

TEST_F(RAIDMonitorTimerTest, DevicesAreFollowedWhetherOrNotTheMonitorIsStarted) {
  auto* late = scene.makeHost(2);
  scene.file(late, "A");
  scene.appear(late);
  EXPECT_EQ(Story{"appeared A online"}, scene.told());
  scene.monitor().startMonitoring();
  scene.monitor().stopMonitoring();
  scene.disappear(late);
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
}

// The monitor's place is taken by another monitor, so that the first one's timer can be seen to
// fire.
TEST_F(RAIDMonitorTimerTest, DeletingAMonitorNeitherStopsNorDeletesItsTimer) {
  scene.end();
  alignas(ScriptedMonitor) unsigned char place[sizeof(ScriptedMonitor)];
  auto* monitor = new (place) ScriptedMonitor;
  monitor->startMonitoring();
  monitor->~ScriptedMonitor();
  monitor = new (place) ScriptedMonitor;
  int refreshes = 0;
  const Pelago::Reference<ScriptedHost> host(new ScriptedHost(7));
  host->onRefresh([&] { ++refreshes; });
  monitor->makeHosts([&](const Pelago::Device&) { return host.get(); });
  monitor->deviceAppeared({7, 4});
  pump().advance(3 * Period);
  EXPECT_EQ(3, refreshes);
  monitor->shutdown();
  monitor->~ScriptedMonitor();
}

class RAIDMonitorDiscoveryTest : public MonitorFixture {
 protected:
  // Told of every device; makes no hosts of its own.
  class Listener : public ScriptedMonitor {
   public:
    void deviceAppeared(const Pelago::Device& device) override {
      story.push_back("appeared " + std::to_string(device.id));
    }
    void deviceDisappeared(const Pelago::Device& device) override {
      story.push_back("disappeared " + std::to_string(device.id));
    }
    Story story;
  };

  ~RAIDMonitorDiscoveryTest() override { listener.shutdown(); }

  Pelago::DiscoveryManager manager;
  Listener listener;
};

TEST_F(RAIDMonitorDiscoveryTest, DevicesReachTheMonitorsVirtualOperations) {
  listener.listenTo(&manager);
  manager.deviceAppeared({11, 4});
  manager.deviceAppeared({12, 9});
  manager.deviceDisappeared({11, 4});
  EXPECT_THAT(listener.story, ElementsAre("appeared 11", "appeared 12", "disappeared 11"));
}

TEST_F(RAIDMonitorDiscoveryTest, UpdatesAndHostsAreNotPassedOn) {
  listener.listenTo(&manager);
  manager.deviceUpdated({11, 4});
  manager.hostAppeared({"a"});
  manager.hostUpdated({"a"});
  manager.hostDisappeared({"a"});
  EXPECT_THAT(listener.story, IsEmpty());
}

TEST_F(RAIDMonitorDiscoveryTest, AMonitorThatListensLateHearsOfTheDevicesThatArePresent) {
  manager.deviceAppeared({11, 4});
  manager.deviceAppeared({12, 4});
  manager.deviceDisappeared({11, 4});
  listener.listenTo(&manager);
  EXPECT_THAT(listener.story, ElementsAre("appeared 12"));
}

TEST_F(RAIDMonitorDiscoveryTest, ListeningTwiceHearsEverythingTwice) {
  listener.listenTo(&manager);
  listener.listenTo(&manager);
  manager.deviceAppeared({11, 4});
  EXPECT_THAT(listener.story, ElementsAre("appeared 11", "appeared 11"));
}

TEST_F(RAIDMonitorDiscoveryTest, AMonitorMayListenToSeveralManagers) {
  Pelago::DiscoveryManager other;
  listener.listenTo(&manager);
  listener.listenTo(&other);
  manager.deviceAppeared({11, 4});
  other.deviceAppeared({12, 4});
  EXPECT_THAT(listener.story, ElementsAre("appeared 11", "appeared 12"));
}

TEST_F(RAIDMonitorDiscoveryTest, AfterTheMonitorsEndDiscoveryGoesOnWithoutIt) {
  scene.monitor().listenTo(&manager);
  scene.makeHost(11);
  scene.deleteMonitor();
  manager.deviceAppeared({11, 4});
  EXPECT_THAT(scene.told(), IsEmpty());
}

class RAIDMonitorEndTest : public MonitorFixture {
 protected:
  RAIDMonitorEndTest() : host(scene.makeHost(1)), volume(scene.file(host, "A")) {
    scene.appear(host);
    EXPECT_EQ(Story{"appeared A online"}, scene.told());
    EXPECT_EQ(2, host->references());
    EXPECT_EQ(Scene::Announced, volume->references());
  }

  ScriptedHost* host;
  RAIDVolume* volume;
};

TEST_F(RAIDMonitorEndTest, DeletingAMonitorSendsNoCallbacksAndReleasesNothing) {
  scene.deleteMonitor();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(2, host->references());
  EXPECT_EQ(Scene::Announced, volume->references());
  host->deref();
  volume->deref();
}

TEST_F(RAIDMonitorEndTest, ShutdownGivesEveryReferenceBackAndTellsNobody) {
  scene.monitor().shutdown();
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(1, host->references());
  EXPECT_EQ(Scene::Filed, volume->references());
  EXPECT_THAT(scene.monitor().raidHosts(), IsEmpty());
}

TEST_F(RAIDMonitorEndTest, ShutdownStopsTheTimer) {
  int refreshes = 0;
  host->onRefresh([&] { ++refreshes; });
  scene.monitor().startMonitoring();
  scene.monitor().shutdown();
  pump().advance(3 * Period);
  EXPECT_EQ(0, refreshes);
}

TEST_F(RAIDMonitorEndTest, ShutdownStopsOnceInTheWayThatTheMonitorItselfStops) {
  class Stopping : public ScriptedMonitor {
   public:
    void stopMonitoring() override {
      ++stops;
      ScriptedMonitor::stopMonitoring();
    }
    int stops = 0;
  };
  Stopping monitor;
  monitor.startMonitoring();
  monitor.shutdown();
  EXPECT_EQ(1, monitor.stops);
  monitor.shutdown();
  EXPECT_EQ(1, monitor.stops);
}

TEST_F(RAIDMonitorEndTest, ShutdownLeavesEveryDiscoveryManager) {
  Pelago::DiscoveryManager first;
  Pelago::DiscoveryManager second;
  scene.monitor().listenTo(&first);
  scene.monitor().listenTo(&second);
  scene.monitor().shutdown();
  scene.file(scene.makeHost(2), "B");
  first.deviceAppeared({2, 4});
  second.deviceAppeared({2, 4});
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_THAT(scene.monitor().raidHosts(), IsEmpty());
}

TEST_F(RAIDMonitorEndTest, ASecondShutdownDoesNothing) {
  scene.monitor().shutdown();
  scene.monitor().shutdown();
  EXPECT_EQ(1, host->references());
  EXPECT_EQ(Scene::Filed, volume->references());
}

TEST_F(RAIDMonitorEndTest, ManyMonitorsMayLiveAndEndInOneProcess) {
  for (int i = 0; i < 50; ++i) {
    Scene other;
    other.file(other.makeHost(1), "A");
    other.appear(other.makeHost(2));
    other.monitor().startMonitoring();
    pump().advance(Period);
  }
  pump().advance(Period);
}

TEST_F(RAIDMonitorEndTest, ClientsAreNeverDeleted) {
  bool deleted = false;
  class Told : public TestSupport::RecordingClient {
   public:
    explicit Told(bool& flag) : _deleted(flag) {}
    ~Told() override { _deleted = true; }

   private:
    bool& _deleted;
  };
  const auto client = std::make_unique<Told>(deleted);
  scene.monitor().addClient(client.get());
  scene.monitor().removeClient(client.get());
  scene.monitor().addClient(client.get());
  scene.end();
  EXPECT_FALSE(deleted);
}

}  // namespace
}  // namespace MonitorTest
