#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using TestSupport::addEntry;
using TestSupport::behindBridge;

// A device that has its port. What is behind the port's PCI path is the test's.
class PCIBridge : public DeviceTest {
 protected:
  void SetUp() override { two.addSwitch().addUpstreamBridge().addPCIPath(); }

  void setPort(const char* key, MemoryRegistry::PropertyValue value) {
    MemoryRegistry::setProperty(two.upstreamPort(), key, std::move(value));
  }
  // The device waits for its bridge, and the one event in flight carries the port.
  void expectWaitingForBridge(const HeldDevice& device) {
    EXPECT_EQ(1U, application().queuedEvents());
    EXPECT_EQ(1U, kept(two.upstreamPort()));
    EXPECT_EQ(0U, kept(two.switchEntry()));
    EXPECT_EQ(0U, kept(two.upstreamBridge()));  // the path entry was given back
    EXPECT_EQ("", device->pciBridgePath());
    EXPECT_EQ(0U, log().count(lookingForDisks()));
  }
  void expectFound(const HeldDevice& device, EntryID bridge) {
    EXPECT_EQ(0U, application().queuedEvents());
    EXPECT_EQ(0U, kept(two.upstreamPort()));
    EXPECT_EQ(0U, kept(two.upstreamBridge()));
    EXPECT_EQ(MemoryRegistry::path(bridge), device->pciBridgePath());
  }
  static std::string printed(const std::string& path) {
    return "the Complete Path is " + path + "\n\n";
  }
};

TEST_F(PCIBridge, IsTheFirstPCIDeviceBeneathThePath) {
  two.addBridges();
  const HeldDevice device(UID);
  expectFound(device, two.bridge());
  EXPECT_EQ(two.bridgePath(), device->pciBridgePath());
  EXPECT_EQ(printed(two.bridgePath()), output());
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge(),
                                         bridgeFound(two.bridgePath()), lookingForDisks()));
  expectKept(two.bridge(), 2);  // 3 is no character of its name; no disks beneath it
}

TEST_F(PCIBridge, IsTheFirstOneDepthFirst) {
  const EntryID upstream = behindBridge(two.upstreamBridge());
  const EntryID deep = addEntry(addEntry(addEntry(upstream, "IOService", "a"), "IOService", "b"),
                                "IOPCIDevice", "deep", "3");
  const EntryID beside = addEntry(upstream, "IOPCIDevice", "beside", "3");
  const HeldDevice device(UID);
  expectFound(device, deep);
  EXPECT_EQ(0U, kept(beside));
  expectKept(deep, 2);
}

TEST_F(PCIBridge, EndsTheWalk) {
  two.addBridges();
  HeldDevice device(UID);
  const auto steps = [&] {
    const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
    device->waitForPCIBridge(MemoryRegistry::handle(two.upstreamPort()));
    return MemoryRegistry::calls(Operation::IOIteratorNext) - before;
  };
  const auto alone = steps();
  addEntry(behindBridge(two.upstreamBridge()), "IOPCIDevice", "later", "9");
  EXPECT_EQ(alone, steps());
  expectKept(two.bridge(), 3 * 2);
}

TEST_F(PCIBridge, CountsWithAClassDerivedFromAPCIDevice) {
  MemoryRegistry::EntryDescription description;
  description.className = "ExamplePCIDevice";
  description.inheritance = {"IORegistryEntry", "IOService", "IOPCIDevice", "ExamplePCIDevice"};
  description.location = "3";
  const EntryID bridge =
      MemoryRegistry::add(behindBridge(two.upstreamBridge()), std::move(description));
  const HeldDevice device(UID);
  expectFound(device, bridge);
  expectKept(bridge, 2);
}

TEST_F(PCIBridge, IsAwaitedWhileThePathIsMissingEmptyOrNoString) {
  const LogLine cannotRead = message(
      "ThunderboltDevice::waitForPCIBridge - can't read back the upstream port's PCI Path "
      "property");
  two.addBridges();
  for (const MemoryRegistry::PropertyValue& path :
       {MemoryRegistry::PropertyValue(""), MemoryRegistry::PropertyValue(5)}) {
    setPort("PCI Path", path);
    log().clear();
    const HeldDevice device(UID);
    EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge(), cannotRead));
    expectWaitingForBridge(device);
    MemoryRegistry::removeProperty(two.upstreamPort(), "PCI Path");
    pump().turn();
    EXPECT_EQ(2U, log().count(cannotRead));
    expectWaitingForBridge(device);
  }
  EXPECT_EQ("", output());
}

TEST_F(PCIBridge, IsAwaitedWhileThePCIDeviceIsAbsentNegativeOrNoNumber) {
  const LogLine cannotRead = message(
      "ThunderboltDevice::waitForPCIBridge - can't read back the upstream port's PCI Device "
      "property");
  two.addBridges();
  MemoryRegistry::removeProperty(two.upstreamPort(), "PCI Device");
  const HeldDevice device(UID);
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge(), cannotRead));
  expectWaitingForBridge(device);
  for (const MemoryRegistry::PropertyValue& number :
       {MemoryRegistry::PropertyValue(-1), MemoryRegistry::PropertyValue(-7),
        MemoryRegistry::PropertyValue("3"), MemoryRegistry::PropertyValue(true)}) {
    log().clear();
    setPort("PCI Device", number);
    pump().turn();
    EXPECT_THAT(log().lines(), ElementsAre(lookingForBridge(), cannotRead));
    expectWaitingForBridge(device);
  }
  setPort("PCI Device", 0);
  pump().turn();
  expectFound(device, two.bridge());
  expectKept(two.bridge(), 2);
}

TEST_F(PCIBridge, ThePathIsReadFirstThenTheDeviceAndOnlyThenThePathIsFollowed) {
  setPort("PCI Path", "IOService:/Nowhere");
  MemoryRegistry::removeProperty(two.upstreamPort(), "PCI Device");
  const HeldDevice device(UID);
  EXPECT_THAT(log().take(),
              ElementsAre(lookingForPort(), lookingForBridge(),
                          message("ThunderboltDevice::waitForPCIBridge - can't read back the "
                                  "upstream port's PCI Device property")));
  EXPECT_EQ(0U, MemoryRegistry::calls(Operation::IORegistryEntryFromPath));
  setPort("PCI Path", "");
  pump().turn();
  EXPECT_THAT(log().lines(),
              ElementsAre(lookingForBridge(),
                          message("ThunderboltDevice::waitForPCIBridge - can't read back the "
                                  "upstream port's PCI Path property")));
  expectWaitingForBridge(device);
}

TEST_F(PCIBridge, IsAwaitedWhileThePathLeadsNowhere) {
  setPort("PCI Path", two.bridgePath() + "/later");
  const HeldDevice device(UID);
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge(),
                                         message("ThunderboltDevice:: Cannot create entry")));
  expectWaitingForBridge(device);
  EXPECT_EQ("", output());
}

TEST_F(PCIBridge, IsAwaitedAfterAFailedLookUpOfThePath) {
  two.addBridges();
  fail(Operation::IORegistryEntryFromPath, 1);
  const HeldDevice device(UID);
  EXPECT_THAT(log().lines(), Contains(message("ThunderboltDevice:: Cannot create entry")));
  expectWaitingForBridge(device);
}

TEST_F(PCIBridge, IsLookedForAgainAfterEveryFailedIterator) {
  two.addBridges();
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    log().clear();
    fail(Operation::IORegistryEntryCreateIterator, 1, row.failure);
    const HeldDevice device(UID);
    EXPECT_THAT(
        log().lines(),
        ElementsAre(lookingForPort(), lookingForBridge(),
                    message("ThunderboltDevice:: Cannot create iterator for member entry")));
    expectWaitingForBridge(device);
    pump().turn();
    expectFound(device, two.bridge());
    expectKept(two.bridge(), 2);
  }
}

TEST_F(PCIBridge, IsAwaitedWithAnEmptyPathPrintedWhileNothingBeneathThePathIsAPCIDevice) {
  const HeldDevice device(UID);
  EXPECT_EQ(printed(""), output());
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge()));
  expectWaitingForBridge(device);
  pump().turns(2);
  EXPECT_EQ(printed("") + printed("") + printed(""), output());
  two.addBridges();
  pump().turn();
  expectFound(device, two.bridge());
  expectKept(two.bridge(), 2);
}

TEST_F(PCIBridge, ThePortIsLookedAtOnceATurnWithoutEnd) {
  const HeldDevice device(UID);
  for (std::size_t turn = 1; turn <= 100; ++turn) {
    pump().turn();
    ASSERT_EQ(turn + 1, log().count(lookingForBridge()));
    ASSERT_EQ(1U, application().queuedEvents());
  }
  EXPECT_EQ(1U, log().count(lookingForPort()));
}

// Whether the device number's low byte is a character of the path's last component decides about
// the reference of the entry found, and about nothing else.
TEST_F(PCIBridge, KeepsAReferenceUnlessTheDeviceNumberIsACharacterOfTheLastComponent) {
  struct Row {
    int pciDevice;
    std::uint64_t kept;
    const char* why;
  };
  constexpr Row rows[] = {
      {3, 1, "the number 3 is no character of /pci-bridge@3"},
      {'3', 0, "the location's digit is"},
      {'p', 0, "so is the first letter"},
      {'/', 0, "the separator belongs to the component"},
      {'@', 0, "so does the sign before the location"},
      {'I', 1, "a letter of earlier components only"},
      {'U', 1, "a letter of the component before"},
      {'P', 1, "case counts"},
      {'3' + 256, 0, "only the low byte counts"},
      {0x7FFFFF00 + '3', 0, "however large the number is"},
      {0, 1, "the character 0 is in no text"},
      {256, 1, "nor is a low byte of 0"},
      {0xFF, 1, "a byte above all characters"},
  };
  two.addBridges();
  std::uint64_t total = 0;
  for (const Row& row : rows) {
    setPort("PCI Device", row.pciDevice);
    const HeldDevice device(UID);
    expectFound(device, two.bridge());
    total += 1 + row.kept;  // the other one is that of the disks stage
    EXPECT_EQ(total, kept(two.bridge())) << row.pciDevice << ": " << row.why;
    total = kept(two.bridge());
  }
  expectKept(two.bridge(), total);
}

TEST_F(PCIBridge, IsAwaitedWhenItsPathIsTooLong) {
  EntryID far = behindBridge(two.upstreamBridge());
  for (int i = 0; i < 4; ++i)
    far = addEntry(far, "IOService", std::string(110, 'x'));
  const EntryID tooFar = addEntry(far, "IOPCIDevice", "pci-bridge", "3");
  setPort("PCI Device", '3');
  ASSERT_EQ("", MemoryRegistry::path(tooFar));

  const HeldDevice device(UID);
  EXPECT_EQ(printed(""), output());
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge()));
  expectWaitingForBridge(device);
  pump().turn();
  expectKept(tooFar, 2);  // nothing occurs in no path: once for each look
}

TEST_F(PCIBridge, IsAwaitedAfterItsPathCouldNotBeRead) {
  two.addBridges();
  setPort("PCI Device", '3');
  fail(Operation::IORegistryEntryGetPath, 1);
  const HeldDevice device(UID);
  EXPECT_EQ(printed(""), output());
  expectWaitingForBridge(device);
  EXPECT_EQ(1U, kept(two.bridge()));
  pump().turn();
  expectFound(device, two.bridge());
  expectKept(two.bridge(), 2);  // of the failed look; no disks
}

// A location that is no hexadecimal number is printed in a path, but never found by one.
TEST_F(PCIBridge, IsAwaitedWhileItsOwnPathDoesNotLeadToIt) {
  two.addBridges();
  MemoryRegistry::setLocation(two.bridge(), "x");
  const std::string path = MemoryRegistry::path(two.upstreamBridge()) + "/IOPP/pci-bridge@x";
  const HeldDevice device(UID);
  EXPECT_EQ(printed(path), output());
  EXPECT_THAT(log().lines(), ElementsAre(lookingForPort(), lookingForBridge()));
  expectWaitingForBridge(device);
  expectKept(two.bridge(), 1);
}

TEST_F(PCIBridge, IsAwaitedAfterAFailedLookUpOfItsPath) {
  two.addBridges();
  fail(Operation::IORegistryEntryFromPath, 2);
  const HeldDevice device(UID);
  EXPECT_EQ(printed(two.bridgePath()), output());
  EXPECT_THAT(log().lines(), Not(Contains(bridgeFound(two.bridgePath()))));
  expectWaitingForBridge(device);
  expectKept(two.bridge(), 1);
}

TEST_F(PCIBridge, IsPrintedWithPercentSignsAsTheyAre) {
  const EntryID bridge =
      addEntry(behindBridge(two.upstreamBridge()), "IOPCIDevice", "100%s%n", "3");
  const HeldDevice device(UID);
  EXPECT_EQ(printed(MemoryRegistry::path(bridge)), output());
  EXPECT_THAT(log().lines(), Contains(bridgeFound(MemoryRegistry::path(bridge))));
  expectKept(bridge, 2);
}

TEST_F(PCIBridge, StaysKnownWhenTheEnclosureHasGone) {
  two.addBridges();
  const HeldDevice device(UID);
  const std::string path = two.bridgePath();
  const EntryID bridge = two.bridge();
  two.unplug();
  pump().turns(3);
  device->refresh();
  EXPECT_EQ(path, device->pciBridgePath());
  EXPECT_EQ(printed(path), output());
  expectKept(bridge, 2);
}

TEST_F(PCIBridge, ADeviceThatIsDroppedWhileItWaitsGivesThePortBack) {
  HeldDevice device(UID);
  pump().turns(2);
  expectWaitingForBridge(device);
  device.drop();
  EXPECT_EQ(0U, kept(two.upstreamPort()));
  EXPECT_EQ(0U, application().queuedEvents());
  const auto calls = MemoryRegistry::calls();
  pump().turns(3);
  EXPECT_EQ(calls, MemoryRegistry::calls());
}

TEST_F(PCIBridge, OfAPortThatHasGoneIsAwaitedWithTheDeadEntry) {
  HeldDevice device(UID);
  const EntryID port = two.upstreamPort();
  MemoryRegistry::terminate(port);
  log().clear();
  pump().turn();
  EXPECT_THAT(log().lines(),
              ElementsAre(lookingForBridge(),
                          message("ThunderboltDevice::waitForPCIBridge - can't read back the "
                                  "upstream port's PCI Path property")));
  EXPECT_EQ(1U, kept(port));
  device.drop();
  EXPECT_EQ(0U, kept(port));
}

}  // namespace
}  // namespace RAIDMonitoring
