#include <gmock/gmock.h>

#include <memory>

#include "monitor/DeviceDiscovery.h"
#include "monitor/RAIDMonitorMac.h"
#include "monitor/UpdateTimer.h"
#include "tests/monitor/Scene.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/RegistryFixture.h"

// The monitor's memory: what it leaves behind on purpose, and what holds when there is none. A
// program of its own, because it replaces operator new.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::failEachAllocation;
using TestSupport::FailingAllocation;
using TestSupport::liveAllocations;
using TestSupport::madeAllocations;

// A host that does not ask for memory, once it is there.
class QuietHost : public RAIDHost {
 public:
  bool matchesDevice(const Pelago::Device& /*device*/) override { return true; }
  void refresh() override {}
};

// Likewise a client. Counts, for all volumes together.
class CountingClient : public RAIDMonitorClient {
 public:
  void RAIDAppeared(RAIDVolume* /*volume*/) override { ++appeared; }
  void RAIDDisappeared(RAIDVolume* /*volume*/) override { ++disappeared; }
  void RAIDUpdated(RAIDVolume* /*volume*/) override { ++updated; }

  int appeared = 0;
  int disappeared = 0;
  int updated = 0;
};

class QuietMonitor : public RAIDMonitor {
 public:
  explicit QuietMonitor(RAIDHost* host = nullptr) : _host(host) {}
  RAIDHost* RAIDHostFromDevice(const Pelago::Device& /*device*/) override { return _host; }

 private:
  RAIDHost* _host;
};

using MonitorMemoryTest = TestSupport::RegistryFixture;

TEST_F(MonitorMemoryTest, WithoutMemoryForItsDiscoveryAMonitorLeavesNothingBehind) {
  const std::size_t before = liveAllocations();
  {
    const FailingAllocation failing(0);
    EXPECT_THROW(QuietMonitor(), std::bad_alloc);
    EXPECT_EQ(sizeof(RAIDMonitor::DeviceDiscovery), failing.failedSize());
  }
  EXPECT_EQ(before, liveAllocations());
}

TEST_F(MonitorMemoryTest, WithoutMemoryForItsTimerAMonitorLeavesItsDiscoveryBehindAndNothingElse) {
  const std::size_t before = liveAllocations();
  {
    const FailingAllocation failing(1);
    EXPECT_THROW(QuietMonitor(), std::bad_alloc);
    EXPECT_EQ(sizeof(RAIDMonitor::UpdateTimer), failing.failedSize());
  }
  EXPECT_EQ(before + 1, liveAllocations());
}

TEST_F(MonitorMemoryTest, AMonitorAsksForNothingButItsDiscoveryAndItsTimer) {
  const std::size_t before = liveAllocations();
  QuietMonitor monitor;
  EXPECT_EQ(before + 2, liveAllocations());
  monitor.shutdown();
  EXPECT_EQ(before, liveAllocations());
}

TEST_F(MonitorMemoryTest, ADeletedMonitorLeavesItsTimerBehindAndNothingElse) {
  const Pelago::Reference<QuietHost> host(new QuietHost);
  const Pelago::Reference<RAIDVolume> volume(new RAIDVolume(host.get(), "A"));
  CountingClient client;
  const std::size_t before = liveAllocations();
  auto monitor = std::make_unique<QuietMonitor>(host.get());
  monitor->addClient(&client);
  monitor->deviceAppeared({1, 4});
  monitor->notifyRAIDApparition(volume.get());
  monitor.reset();
  EXPECT_EQ(before + 1, liveAllocations());
  host->deref();
  volume->deref();
}

TEST_F(MonitorMemoryTest, AfterAShutdownNothingIsLeft) {
  const Pelago::Reference<QuietHost> host(new QuietHost);
  const Pelago::Reference<RAIDVolume> volume(new RAIDVolume(host.get(), "A"));
  CountingClient client;
  const std::size_t before = liveAllocations();
  auto monitor = std::make_unique<QuietMonitor>(host.get());
  monitor->addClient(&client);
  monitor->deviceAppeared({1, 4});
  monitor->notifyRAIDApparition(volume.get());
  monitor->shutdown();
  monitor.reset();
  EXPECT_EQ(before, liveAllocations());
  EXPECT_EQ(1, host->references());
  EXPECT_EQ(1, volume->references());
}

TEST_F(MonitorMemoryTest, ADeviceOfAnotherTypeAllocatesNothing) {
  RAIDMonitorMac monitor;
  const std::size_t before = madeAllocations();
  EXPECT_EQ(nullptr, monitor.RAIDHostFromDevice({1, 3}));
  EXPECT_EQ(before, madeAllocations());
  monitor.shutdown();
}

TEST_F(MonitorMemoryTest, TheFactoryPassesLackOfMemoryOn) {
  std::unique_ptr<RAIDMonitor> monitor;
  const auto failures = failEachAllocation([&] { monitor.reset(RAIDMonitor::CreateRAIDMonitor()); },
                                           [&](bool threw) { EXPECT_TRUE(threw); });
  EXPECT_EQ(3U, failures);  // the monitor, its discovery, its timer
  monitor->shutdown();
}

TEST_F(MonitorMemoryTest, AClientThatCannotBeAddedIsNotThere) {
  QuietMonitor monitor;
  CountingClient client;
  failEachAllocation([&] { monitor.addClient(&client); },
                     [&](bool threw) {
                       EXPECT_TRUE(threw);
                       EXPECT_EQ(-1, monitor.indexOfClient(&client));
                     });
  EXPECT_EQ(0, monitor.indexOfClient(&client));
  monitor.shutdown();
}

class MonitorOutOfMemoryTest : public TestSupport::RegistryFixture {
 protected:
  MonitorOutOfMemoryTest() { monitor.addClient(&client); }
  ~MonitorOutOfMemoryTest() override {
    monitor.shutdown();
    for (auto* volume : host->raidVolumes())
      host->removeRAIDVolume(volume);
  }

  RAIDVolume* file(const std::string& uuid) {
    auto* volume = new RAIDVolume(host.get(), uuid);
    volume->setState(VolumeDegraded);
    host->addRAIDVolume(volume);
    return volume;
  }

  Pelago::Reference<QuietHost> host{new QuietHost};
  QuietMonitor monitor{host.get()};
  CountingClient client;
};

TEST_F(MonitorOutOfMemoryTest, AHostThatCannotBeKeptIsNotReferenced) {
  const auto failures = failEachAllocation(
      [&] {
        monitor.deviceAppeared({1, 4});
      },
      [&](bool threw) {
        EXPECT_TRUE(threw);
        EXPECT_EQ(1, host->references());
        EXPECT_THAT(monitor.raidHosts(), IsEmpty());
      });
  EXPECT_EQ(1U, failures);
  EXPECT_EQ(2, host->references());
}

TEST_F(MonitorOutOfMemoryTest, AVolumeThatCannotBeRecordedIsNeitherReferencedNorTold) {
  auto* volume = file("A UUID THAT IS TOO LONG TO BE STORED IN PLACE");
  const auto failures = failEachAllocation([&] { monitor.notifyRAIDApparition(volume); },
                                           [&](bool threw) {
                                             EXPECT_TRUE(threw);
                                             EXPECT_EQ(1, volume->references());
                                             EXPECT_EQ(0, client.appeared);
                                           });
  EXPECT_LT(0U, failures);
  EXPECT_EQ(2, volume->references());
  EXPECT_EQ(1, client.appeared);
}

TEST_F(MonitorOutOfMemoryTest, ARefreshThatFailsAnnouncesEveryVolumeOnceOnTheWhole) {
  monitor.deviceAppeared({1, 4});
  const auto volumes = {file("A"), file("B"), file("C")};
  const auto failures =
      failEachAllocation([&] { monitor.refresh(); }, [&](bool threw) { EXPECT_TRUE(threw); });
  EXPECT_LT(6U, failures);
  EXPECT_EQ(3, client.appeared);
  EXPECT_EQ(0, client.disappeared);
  for (auto* volume : volumes)
    EXPECT_EQ(2, volume->references());
}

TEST_F(MonitorOutOfMemoryTest, AWithdrawalThatFailsIsMadeUpForByTheNextCycle) {
  monitor.deviceAppeared({1, 4});
  const Pelago::Reference<RAIDVolume> volume(file("A"));
  monitor.refresh();
  host->removeRAIDVolume(volume.get());
  failEachAllocation([&] { monitor.refresh(); },
                     [&](bool threw) {
                       EXPECT_TRUE(threw);
                       EXPECT_EQ(0, client.disappeared);
                       EXPECT_EQ(2, volume->references());
                     });
  EXPECT_EQ(1, client.disappeared);
  EXPECT_EQ(1, volume->references());
}

}  // namespace
}  // namespace MonitorTest
