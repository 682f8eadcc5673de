#include "thunderbolt/PollingEvent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/registry/RegistryReferences.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PollingEvents : public DeviceTest {};

TEST_F(PollingEvents, CarryTheirTypeTheirEntryAndNoData) {
  const unsigned handle = MemoryRegistry::handle(host.ownSwitch());
  const PollingEvent event(PollingEvent::PCIBridge, handle);
  EXPECT_EQ(4U, event.type());
  EXPECT_EQ(handle, event.entry());
  EXPECT_EQ(nullptr, event.data());
}

TEST_F(PollingEvents, HaveTheStagesNumbers) {
  EXPECT_EQ(3U, static_cast<unsigned>(PollingEvent::UpstreamPort));
  EXPECT_EQ(4U, static_cast<unsigned>(PollingEvent::PCIBridge));
  EXPECT_EQ(5U, static_cast<unsigned>(PollingEvent::Disks));
}

TEST_F(PollingEvents, GiveTheEntryBackWhenTheyEndUndelivered) {
  auto* event = new PollingEvent(3, MemoryRegistry::handle(host.ownSwitch()));
  EXPECT_EQ(1U, kept(host.ownSwitch()));
  event->destroy();
  EXPECT_EQ(0U, kept(host.ownSwitch()));
}

TEST_F(PollingEvents, GiveNoReferenceBackButTheirOwn) {
  const auto held = RegistryHandle::adopt(MemoryRegistry::handle(host.ownSwitch()));
  { const PollingEvent event(3, MemoryRegistry::handle(host.ownSwitch())); }
  EXPECT_EQ(1U, kept(host.ownSwitch()));
}

TEST_F(PollingEvents, HandTheEntryOverOnce) {
  std::uint64_t released = 0;
  {
    PollingEvent event(3, MemoryRegistry::handle(host.ownSwitch()));
    const unsigned taken = event.takeEntry();
    EXPECT_EQ(host.ownSwitch(), MemoryRegistry::entryOf(taken));
    EXPECT_EQ(0U, event.takeEntry());
    released = MemoryRegistry::calls(MemoryRegistry::Operation::IOObjectRelease);
  }
  EXPECT_EQ(released, MemoryRegistry::calls(MemoryRegistry::Operation::IOObjectRelease));
  EXPECT_EQ(1U, kept(host.ownSwitch()));
  expectKept(host.ownSwitch(), 1);
}

TEST_F(PollingEvents, OfOtherTypesReachTheBaseClassAndDoNothing) {
  const HeldDevice device(UID);
  log().clear();
  const auto calls = MemoryRegistry::calls();
  for (const unsigned type : {0U, 1U, 2U, 6U, 7U, 0xFFFFFFFFU}) {
    Pelago::Event event(type, nullptr);
    device->event(&event);
  }
  EXPECT_EQ(calls, MemoryRegistry::calls());
  EXPECT_THAT(log().lines(), IsEmpty());
  EXPECT_EQ(0U, application().queuedEvents());
}

TEST_F(PollingEvents, OfOtherTypesKeepTheirEntryToThemselves) {
  const HeldDevice device(UID);
  PollingEvent event(6, MemoryRegistry::handle(host.ownSwitch()));
  device->event(&event);
  EXPECT_EQ(1U, kept(host.ownSwitch()));
  EXPECT_NE(0U, event.entry());
}

TEST_F(PollingEvents, SelectTheStageByTheirType) {
  const HeldDevice device(UID);
  two.addSwitch();
  log().clear();

  PollingEvent port(3, MemoryRegistry::handle(two.switchEntry()));
  device->event(&port);
  EXPECT_THAT(log().take(), ElementsAre(lookingForPort(), waitingForPCIPath()));

  PollingEvent bridge(4, MemoryRegistry::handle(two.upstreamPort()));
  device->event(&bridge);
  EXPECT_THAT(log().take(),
              ElementsAre(lookingForBridge(),
                          message("ThunderboltDevice::waitForPCIBridge - can't read back the "
                                  "upstream port's PCI Path property")));
  two.addUpstreamBridge();
  PollingEvent disks(5, MemoryRegistry::handle(two.upstreamBridge()));
  device->event(&disks);
  EXPECT_THAT(log().take(), ElementsAre(lookingForDisks()));

  expectKept(two.upstreamBridge(), 1);  // no disks beneath it
}

TEST_F(PollingEvents, OfTypeFiveFromOutsideRunTheDisksStageOnTheirEntry) {
  two.complete();
  const HeldDevice device(UID);  // finds the bridge and no disks
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  log().clear();

  Pelago::Application::PostEvent(device.get(),
                                 new PollingEvent(5, MemoryRegistry::handle(two.bridge())));
  EXPECT_THAT(log().lines(), IsEmpty());
  pump().turn();

  EXPECT_THAT(log().lines(), ElementsAre(lookingForDisks()));
  EXPECT_EQ(1U, device->raidVolumes().size());
  // Found, waited beneath in vain; searched for sets. The event's reference has come back.
  expectKept(two.bridge(), 2 + 1 + keptAtFirstSight(2));
}

TEST_F(PollingEvents, OfTypeFiveWithNoDisksKeepTheirEntryAndPostNothing) {
  const HeldDevice device(UID);
  two.addSwitch().addUpstreamBridge();
  PollingEvent event(5, MemoryRegistry::handle(two.upstreamBridge()));
  device->event(&event);
  EXPECT_EQ(0U, application().queuedEvents());
  expectKept(two.upstreamBridge(), 1);
}

}  // namespace
}  // namespace RAIDMonitoring
