#include "monitor/RAIDMonitorMac.h"

#include <gmock/gmock.h>

#include <memory>

#include "platform/pelago/Reference.h"
#include "tests/support/EnclosureBuilder.h"
#include "tests/support/RegistryFixture.h"
#include "thunderbolt/ThunderboltDevice.h"

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::message;
using HostReference = Pelago::Reference<RAIDHost>;

constexpr std::uint64_t UID = 0x8000000000000123;

class RAIDMonitorMacTest : public TestSupport::RegistryFixture {
 protected:
  ~RAIDMonitorMacTest() override { monitor.shutdown(); }

  RAIDMonitorMac monitor;
};

TEST_F(RAIDMonitorMacTest, ADeviceOfAnotherTypeYieldsNullAndIsNotLookedFor) {
  for (const std::uint32_t type : {0U, 1U, 2U, 3U, 5U, 6U, 4U + 256U, 0xFFFFFFFFU}) {
    EXPECT_EQ(nullptr, monitor.RAIDHostFromDevice({UID, type})) << type;
    monitor.deviceAppeared({UID, type});
  }
  EXPECT_THAT(monitor.raidHosts(), IsEmpty());
  EXPECT_EQ(0U, MemoryRegistry::calls());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(RAIDMonitorMacTest, AThunderboltDeviceYieldsAHostWithItsUIDAndWithoutAReference) {
  RAIDHost* made = monitor.RAIDHostFromDevice({UID, 4});
  ASSERT_NE(nullptr, made);
  EXPECT_EQ(0, made->references());
  const HostReference host(made);
  const auto* device = dynamic_cast<ThunderboltDevice*>(host.get());
  ASSERT_NE(nullptr, device);
  EXPECT_EQ(UID, device->uid());
  EXPECT_THAT(monitor.raidHosts(), IsEmpty()) << "the caller keeps it";
}

TEST_F(RAIDMonitorMacTest, ADeviceWhoseSwitchIsNotThereYieldsAHostAllTheSame) {
  const HostReference host(monitor.RAIDHostFromDevice({UID, 4}));
  ASSERT_TRUE(host);
  EXPECT_THAT(
      log().lines(),
      ElementsAre(message("ThunderboltDevice::findRegistryEntry() - Thunderbolt device with UUID "
                          "'0x8000000000000123' was not found."),
                  message("Cannot find IOThunderboltSwitch with UUID 0x016llx",
                          "RAIDMonitor-ThunderboltDevice")));
  EXPECT_THAT(host->raidVolumes(), IsEmpty());
}

TEST_F(RAIDMonitorMacTest, TwoCallsWithOneDeviceYieldTwoHosts) {
  const HostReference first(monitor.RAIDHostFromDevice({UID, 4}));
  const HostReference second(monitor.RAIDHostFromDevice({UID, 4}));
  EXPECT_NE(first.get(), second.get());
}

TEST_F(RAIDMonitorMacTest, TheHostIsReadFromTheRegistryAtOnce) {
  const TestSupport::HostTree tree;
  TestSupport::EnclosureBuilder enclosure(tree, TestSupport::twoBay(UID));
  enclosure.addSwitch();
  const HostReference host(monitor.RAIDHostFromDevice({UID, 4}));
  EXPECT_EQ("Example Storage", host->vendorName());
  EXPECT_EQ(2, host->bayCount());
  EXPECT_EQ(1U, application().queuedEvents()) << "it waits for its PCI path";
}

TEST_F(RAIDMonitorMacTest, TheFactoryMakesAFreshMonitorEveryTime) {
  const std::unique_ptr<RAIDMonitor> first(RAIDMonitor::CreateRAIDMonitor());
  const std::unique_ptr<RAIDMonitor> second(RAIDMonitor::CreateRAIDMonitor());
  EXPECT_NE(first, second);
  EXPECT_NE(nullptr, dynamic_cast<RAIDMonitorMac*>(first.get()));
  first->deviceAppeared({UID, 4});
  EXPECT_EQ(1U, first->raidHosts().size());
  EXPECT_THAT(second->raidHosts(), IsEmpty());
  first->shutdown();
  second->shutdown();
}

TEST_F(RAIDMonitorMacTest, AMonitorFromTheFactoryIsNotStarted) {
  const std::unique_ptr<RAIDMonitor> made(RAIDMonitor::CreateRAIDMonitor());
  made->deviceAppeared({UID, 4});
  const auto calls = MemoryRegistry::calls();
  pump().advance(10000);
  EXPECT_EQ(calls, MemoryRegistry::calls());
  made->startMonitoring();
  pump().advance(2000);
  EXPECT_LT(calls, MemoryRegistry::calls());
  const auto refreshed = MemoryRegistry::calls();
  made->stopMonitoring();
  pump().advance(10000);
  EXPECT_EQ(refreshed, MemoryRegistry::calls());
  made->shutdown();
}

}  // namespace
}  // namespace MonitorTest
