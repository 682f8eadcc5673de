#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using MemoryRegistry::number64;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::addEntry;

constexpr int UpstreamAdapter = 0x100102;
// A path that leads nowhere: the device has its port, and waits for the bridge.
constexpr const char* Nowhere = "IOService:/Nowhere";

class UpstreamPort : public DeviceTest {
 protected:
  // A bare switch, to which the test adds the ports.
  void SetUp() override {
    _switch =
        addEntry(host.lanePort(0), "IOThunderboltSwitchType2", "", "", {{"UID", number64(UID)}});
  }

  EntryID addPort(MemoryRegistry::PropertyValue adapter) {
    return addEntry(_switch, "IOThunderboltPort", "", "", {{"Adapter Type", std::move(adapter)}});
  }
  EntryID addReadyPort() {
    const EntryID port = addPort(UpstreamAdapter);
    MemoryRegistry::setProperty(port, "PCI Path", Nowhere);
    MemoryRegistry::setProperty(port, "PCI Device", 3);
    return port;
  }
  // The device waits for its port, and the one event in flight carries the switch.
  void expectWaitingForPort() {
    EXPECT_EQ(1U, application().queuedEvents());
    EXPECT_EQ(1U, kept(_switch));
  }
  // The device has the port, gave the switch back, and waits for the bridge.
  void expectFound(EntryID port) {
    EXPECT_EQ(1U, application().queuedEvents());
    EXPECT_EQ(0U, kept(_switch));
    EXPECT_EQ(1U, kept(port));
    EXPECT_EQ(1U, log().count(lookingForBridge()));
  }

  EntryID _switch = 0;
};

TEST_F(UpstreamPort, IsTheChildWithTheAdapterTypeAndAPCIPath) {
  addPort(1);
  addPort(0x100101);
  const EntryID port = addReadyPort();
  const HeldDevice device(UID);
  expectFound(port);
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge(),
                                         message("ThunderboltDevice:: Cannot create entry")));
}

TEST_F(UpstreamPort, IsAwaitedWhileNoChildHasTheAdapterType) {
  for (const int adapter : {0, 1, 2, 0x100101, 0x100103, 0x0E0102, -1, 0x200102}) {
    MemoryRegistry::setProperty(addPort(adapter), "PCI Path", Nowhere);
  }
  addPort("1048834");
  addPort(number64(0x100100102));
  const HeldDevice device(UID);
  expectWaitingForPort();
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort()));
}

TEST_F(UpstreamPort, IsAwaitedWhileTheSwitchHasNoChildren) {
  const HeldDevice device(UID);
  expectWaitingForPort();
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort()));
}

TEST_F(UpstreamPort, IsNotSoughtBeneathThePorts) {
  const EntryID lane = addPort(1);
  const EntryID below = addEntry(lane, "IOThunderboltPort", "", "",
                                 {{"Adapter Type", UpstreamAdapter}, {"PCI Path", Nowhere}});
  const HeldDevice device(UID);
  expectWaitingForPort();
  EXPECT_EQ(0U, kept(below));
}

TEST_F(UpstreamPort, IsTheSecondOfTwoWhenOnlyTheSecondHasAPCIPath) {
  addPort(UpstreamAdapter);
  const EntryID second = addReadyPort();
  const HeldDevice device(UID);
  expectFound(second);
  EXPECT_EQ(1U, log().count(waitingForPCIPath()));
  EXPECT_EQ(waitingForPCIPath(), log().lines().at(1));
}

TEST_F(UpstreamPort, IsTheFirstOfTwoThatAreReady) {
  const EntryID first = addReadyPort();
  const EntryID second = addReadyPort();
  addPort(UpstreamAdapter);  // not reached, so not waited for
  const HeldDevice device(UID);
  expectFound(first);
  EXPECT_EQ(0U, kept(second));
  EXPECT_EQ(0U, log().count(waitingForPCIPath()));
}

TEST_F(UpstreamPort, EachPortWithoutAPCIPathIsLogged) {
  addPort(UpstreamAdapter);
  addPort(UpstreamAdapter);
  const HeldDevice device(UID);
  expectWaitingForPort();
  EXPECT_THAT(log().lines(),
              ElementsAre(lookingForPort(), waitingForPCIPath(), waitingForPCIPath()));
}

TEST_F(UpstreamPort, IsAcceptedWithAPCIPathThatIsNoString) {
  const EntryID port = addPort(UpstreamAdapter);
  MemoryRegistry::setProperty(port, "PCI Path", 7);
  const HeldDevice device(UID);
  expectFound(port);
}

TEST_F(UpstreamPort, IsLookedForAgainAfterEveryFailedIterator) {
  const EntryID port = addReadyPort();
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    log().clear();
    fail(Operation::IORegistryEntryGetChildIterator, 1, row.failure);
    const HeldDevice device(UID);
    EXPECT_THAT(log().lines(),
                ElementsAre(lookingForPort(),
                            message("ThunderboltDevice::waitForUpstreamPort - could not create "
                                    "iterator for ports")));
    expectWaitingForPort();
    pump().turn();
    expectFound(port);
  }
}

TEST_F(UpstreamPort, IsLookedForOnceATurnWithoutEnd) {
  addPort(UpstreamAdapter);
  const HeldDevice device(UID);
  for (int turn = 1; turn <= 100; ++turn) {
    pump().turn();
    ASSERT_EQ(static_cast<std::size_t>(turn) + 1, log().count(waitingForPCIPath()));
    expectWaitingForPort();
  }
}

TEST_F(UpstreamPort, IsFoundAtTheTurnAfterItsPCIPathHasCome) {
  const EntryID port = addPort(UpstreamAdapter);
  const HeldDevice device(UID);
  pump().turns(3);
  MemoryRegistry::setProperty(port, "PCI Path", Nowhere);
  EXPECT_EQ(0U, log().count(lookingForBridge()));
  pump().turn();
  expectFound(port);
  EXPECT_EQ(5U, log().count(lookingForPort()));
}

TEST_F(UpstreamPort, OfASwitchThatHasGoneIsAwaitedWithTheDeadEntry) {
  HeldDevice device(UID);
  MemoryRegistry::terminate(_switch);
  log().clear();
  pump().turn();
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(),
                                         message("ThunderboltDevice::waitForUpstreamPort - could "
                                                 "not create iterator for ports")));
  expectWaitingForPort();
  device.drop();
  EXPECT_EQ(0U, kept(_switch));
}

TEST_F(UpstreamPort, ADeviceThatIsDroppedWhileItWaitsGivesTheSwitchBack) {
  addPort(UpstreamAdapter);
  HeldDevice device(UID);
  expectWaitingForPort();
  device.drop();
  EXPECT_EQ(0U, kept(_switch));
  EXPECT_EQ(0U, application().queuedEvents());
  log().clear();
  pump().turns(3);
  EXPECT_THAT(log().lines(), IsEmpty());
}

}  // namespace
}  // namespace RAIDMonitoring
