#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

#include "tests/monitor/MonitorFixture.h"

// Hosts that arrive and leave, and what clients hear of them.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;

using HostArrivalTest = MonitorFixture;

TEST_F(HostArrivalTest, ADeviceThatHostsNoRAIDIsIgnoredWithoutALine) {
  scene.monitor().deviceAppeared({99, 4});
  EXPECT_THAT(scene.monitor().raidHosts(), IsEmpty());
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(HostArrivalTest, TheHostIsMadeFromTheDeviceAsItIs) {
  std::vector<Pelago::Device> asked;
  scene.monitor().makeHosts([&](const Pelago::Device& device) {
    asked.push_back(device);
    return nullptr;
  });
  scene.monitor().deviceAppeared({99, 7});
  EXPECT_THAT(asked, ElementsAre(Pelago::Device{99, 7}));
}

TEST_F(HostArrivalTest, TheMonitorTakesOneReferenceOnTheHost) {
  auto* host = scene.makeHost(1);
  scene.appear(host);
  EXPECT_EQ(2, host->references());
  EXPECT_THAT(scene.monitor().raidHosts(), ElementsAre(host));
  EXPECT_EQ(2, host->references()) << "listing takes none";
}

TEST_F(HostArrivalTest, VolumesAreAnnouncedInAscendingOrderOfTheirUUIDsAndReferencedOnce) {
  auto* host = scene.makeHost(1);
  auto* b = scene.file(host, "B", VolumeDegraded);
  auto* a = scene.file(host, "A");
  scene.appear(host);
  EXPECT_EQ((Story{"appeared A online", "appeared B degraded"}), scene.told());
  EXPECT_EQ(Scene::Announced, a->references());
  EXPECT_EQ(Scene::Announced, b->references());
}

TEST_F(HostArrivalTest, AVolumeInEveryStateButUnknownIsAnnounced) {
  auto* host = scene.makeHost(1);
  std::vector<RAIDVolume*> volumes;
  for (int state = VolumeCrossDevice; state <= VolumeOffline; ++state) {
    volumes.push_back(
        scene.file(host, std::to_string(state + 2), static_cast<RAIDVolumeState>(state)));
  }
  scene.appear(host);
  EXPECT_EQ((Story{"appeared 0 cross-device", "appeared 2 failed", "appeared 3 terminating",
                   "appeared 4 initializing", "appeared 5 online", "appeared 6 degraded",
                   "appeared 7 offline"}),
            scene.told());
  EXPECT_EQ(Scene::Filed, volumes[1]->references());
}

TEST_F(HostArrivalTest, AHostWithoutVolumesIsKeptSilently) {
  auto* host = scene.makeHost(1);
  scene.appear(host);
  EXPECT_THAT(scene.monitor().raidHosts(), ElementsAre(host));
  EXPECT_THAT(scene.told(), IsEmpty());
}

TEST_F(HostArrivalTest, ArrivalDoesNotRefreshAndDoesNotAskWhetherTheDeviceIsKnown) {
  auto* host = scene.makeHost(1);
  int calls = 0;
  host->onRefresh([&] { ++calls; });
  host->onMatch([&] { ++calls; });
  scene.appear(host);
  scene.appear(scene.makeHost(2));
  EXPECT_EQ(0, calls);
}

TEST_F(HostArrivalTest, ADeviceReportedTwiceYieldsTwoHosts) {
  std::vector<Pelago::Reference<ScriptedHost>> made;
  scene.monitor().makeHosts([&](const Pelago::Device& device) {
    made.emplace_back(new ScriptedHost(device.id));
    return made.back().get();
  });
  scene.monitor().deviceAppeared({1, 4});
  scene.monitor().deviceAppeared({1, 4});
  EXPECT_EQ(2U, scene.monitor().raidHosts().size());
  EXPECT_EQ(2, made.at(0)->references());
  EXPECT_EQ(2, made.at(1)->references());
}

TEST_F(HostArrivalTest, HostsAreListedInTheOrderOfTheirAddresses) {
  std::vector<RAIDHost*> hosts;
  for (std::uint64_t id = 1; id <= 8; ++id) {
    hosts.push_back(scene.makeHost(id));
    scene.monitor().deviceAppeared({id, 4});
  }
  std::sort(hosts.begin(), hosts.end(), std::less<>());
  EXPECT_EQ(hosts, scene.monitor().raidHosts());
}

TEST_F(HostArrivalTest, OfTwoDevicesWithVolumesOfOneUUIDOnlyTheFirstIsAnnounced) {
  auto* first = scene.makeHost(1);
  auto* second = scene.makeHost(2);
  auto* recorded = scene.file(first, "A");
  auto* silent = scene.file(second, "A", VolumeDegraded);
  auto* own = scene.file(second, "B");
  scene.appear(first);
  scene.appear(second);
  EXPECT_EQ((Story{"appeared A online", "appeared B online"}), scene.told());
  EXPECT_EQ(Scene::Announced, recorded->references());
  EXPECT_EQ(Scene::Filed, silent->references());
  EXPECT_EQ(Scene::Announced, own->references());
}

TEST_F(HostArrivalTest, TheHostIsOnRecordBeforeItsVolumesAreAnnounced) {
  auto* host = scene.makeHost(1);
  scene.file(host, "A");
  std::vector<RAIDHost*> hosts;
  int references = 0;
  scene.client().onEvent([&](const std::string&, RAIDVolume*) {
    hosts = scene.monitor().raidHosts();
    references = host->references();
  });
  scene.appear(host);
  EXPECT_THAT(hosts, ElementsAre(host));
  EXPECT_EQ(2, references);
}

using HostDepartureTest = MonitorFixture;

TEST_F(HostDepartureTest, ADeviceThatNoHostMatchesChangesNothing) {
  auto* host = scene.makeHost(1);
  auto* volume = scene.file(host, "A");
  scene.appear(host);
  scene.told();
  log().clear();
  scene.monitor().deviceDisappeared({99, 4});
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_THAT(scene.monitor().raidHosts(), ElementsAre(host));
  EXPECT_EQ(2, host->references());
  EXPECT_EQ(Scene::Announced, volume->references());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(HostDepartureTest, VolumesAreWithdrawnInAscendingOrderAndTheHostIsReleased) {
  auto* host = scene.makeHost(1);
  auto* b = scene.file(host, "B");
  auto* a = scene.file(host, "A", VolumeFailed);
  scene.appear(host);
  scene.told();
  scene.disappear(host);
  EXPECT_EQ((Story{"disappeared A", "disappeared B"}), scene.told());
  EXPECT_EQ(Scene::Filed, a->references());
  EXPECT_EQ(Scene::Filed, b->references());
  EXPECT_EQ(1, host->references());
  EXPECT_THAT(scene.monitor().raidHosts(), IsEmpty());
}

TEST_F(HostDepartureTest, WithoutAnotherHolderTheHostEnds) {
  bool ended = false;
  scene.monitor().makeHosts([&](const Pelago::Device& device) {
    auto* host = new ScriptedHost(device.id);
    host->onEnd([&] { ended = true; });
    return host;
  });
  scene.monitor().deviceAppeared({5, 4});
  EXPECT_FALSE(ended);
  scene.monitor().deviceDisappeared({5, 4});
  EXPECT_TRUE(ended);
}

TEST_F(HostDepartureTest, TheHostIsOffTheRecordWhenItEnds) {
  std::vector<RAIDHost*> hosts{nullptr};
  scene.monitor().makeHosts([&](const Pelago::Device& device) {
    auto* host = new ScriptedHost(device.id);
    host->onEnd([&] { hosts = scene.monitor().raidHosts(); });
    return host;
  });
  scene.monitor().deviceAppeared({5, 4});
  scene.monitor().deviceDisappeared({5, 4});
  EXPECT_THAT(hosts, IsEmpty());
}

TEST_F(HostDepartureTest, HostsAreAskedInTheirOrderUpToTheFirstThatMatches) {
  std::vector<Pelago::Reference<ScriptedHost>> hosts;
  std::vector<RAIDHost*> asked;
  scene.monitor().makeHosts([&](const Pelago::Device&) {
    auto* host = new ScriptedHost(5);  // every one matches
    hosts.emplace_back(host);
    host->onMatch([&asked, host] { asked.push_back(host); });
    return host;
  });
  for (int i = 0; i < 3; ++i)
    scene.monitor().deviceAppeared({5, 4});
  const auto before = scene.monitor().raidHosts();
  scene.monitor().deviceDisappeared({5, 4});
  EXPECT_THAT(asked, ElementsAre(before[0]));
  EXPECT_THAT(scene.monitor().raidHosts(), ElementsAre(before[1], before[2]));
  asked.clear();
  scene.monitor().deviceDisappeared({6, 4});
  EXPECT_THAT(asked, ElementsAre(before[1], before[2]));
}

TEST_F(HostDepartureTest, AVolumeThatWasNeverAnnouncedIsNotWithdrawn) {
  auto* host = scene.makeHost(1);
  auto* unknown = scene.file(host, "A", VolumeUnknown);
  scene.appear(host);
  auto* late = scene.file(host, "B");
  scene.disappear(host);
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(Scene::Filed, unknown->references());
  EXPECT_EQ(Scene::Filed, late->references());
}

TEST_F(HostDepartureTest, AVolumeThatIsUnknownAtThatTimeIsWithdrawnByTheNextRefreshOnly) {
  auto* host = scene.makeHost(1);
  auto* volume = scene.file(host, "A");
  scene.appear(host);
  scene.told();
  volume->setState(VolumeUnknown);
  scene.disappear(host);
  EXPECT_THAT(scene.told(), IsEmpty());
  EXPECT_EQ(Scene::Announced, volume->references());
  scene.monitor().refresh();
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(Scene::Filed, volume->references());
}

TEST_F(HostDepartureTest, ClientsAreToldWhileTheHostIsStillKept) {
  auto* host = scene.makeHost(1);
  auto* volume = scene.file(host, "A");
  scene.appear(host);
  std::vector<RAIDHost*> hosts;
  int references = 0;
  scene.client().onEvent([&](const std::string&, RAIDVolume* gone) {
    EXPECT_EQ(volume, gone);
    EXPECT_EQ(host, gone->host());
    hosts = scene.monitor().raidHosts();
    references = host->references();
  });
  scene.disappear(host);
  EXPECT_THAT(hosts, ElementsAre(host));
  EXPECT_EQ(2, references);
}

TEST_F(HostDepartureTest, ASetAnnouncedThroughAnotherHostLeavesAsTheLeavingHostsObject) {
  auto* staying = scene.makeHost(1);
  auto* leaving = scene.makeHost(2);
  auto* recorded = scene.file(staying, "A");
  auto* passed = scene.file(leaving, "A");
  scene.appear(staying);
  scene.appear(leaving);
  scene.told();
  RAIDVolume* told = nullptr;
  scene.client().onEvent([&](const std::string&, RAIDVolume* volume) { told = volume; });
  scene.disappear(leaving);
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(passed, told);
  EXPECT_EQ(Scene::Announced, recorded->references()) << "keeps the monitor's reference";
  EXPECT_EQ(Scene::Filed - 1, passed->references()) << "loses one that was not the monitor's";

  // The UUID has left the record: the one that stays is announced anew, with another reference.
  scene.monitor().refresh();
  EXPECT_EQ(Story{"appeared A online"}, scene.told());
  EXPECT_EQ(recorded, told);
  EXPECT_EQ(Scene::Announced + 1, recorded->references());
  recorded->deref();
  passed->ref();
}

TEST_F(HostDepartureTest, ADeviceReportedTwiceLeavesHostByHost) {
  scene.monitor().makeHosts(
      [&](const Pelago::Device& device) { return new ScriptedHost(device.id); });
  scene.monitor().deviceAppeared({5, 4});
  scene.monitor().deviceAppeared({5, 4});
  scene.monitor().deviceDisappeared({5, 4});
  EXPECT_EQ(1U, scene.monitor().raidHosts().size());
  scene.monitor().deviceDisappeared({5, 4});
  EXPECT_THAT(scene.monitor().raidHosts(), IsEmpty());
}

}  // namespace
}  // namespace MonitorTest
