#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "platform/pelago/Device.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using MemoryRegistry::number64;
using TestSupport::addEntry;
using TestSupport::EnclosureBuilder;

// A device whose switch has this identity and nothing else, so that its bring-up waits.
class DeviceIdentity : public DeviceTest {
 protected:
  EntryID addSwitch(MemoryRegistry::Dictionary properties) {
    properties.emplace_back("UID", number64(UID));
    return addEntry(host.lanePort(0), "IOThunderboltSwitchType2", "", "", std::move(properties));
  }
};

TEST_F(DeviceIdentity, IsReadFromTheSwitch) {
  two.addSwitch();
  const HeldDevice device(UID);
  EXPECT_EQ("Two Bay", device->modelName());
  EXPECT_EQ(2U, device->modelID());
  EXPECT_EQ("Example Storage", device->vendorName());
  EXPECT_EQ(3U, device->vendorID());
  EXPECT_EQ(0, device->deviceStatus());
  EXPECT_EQ(2, device->bayCount());
  EXPECT_EQ(UID, device->uid());
  EXPECT_EQ(UID, device->deviceID());
  EXPECT_EQ("", device->pciBridgePath());
}

TEST_F(DeviceIdentity, EveryVendorAndModelHasItsBayCount) {
  struct Row {
    std::uint64_t vendor, model;
    int bays;
  };
  constexpr std::uint64_t highest = std::numeric_limits<std::uint64_t>::max();
  constexpr Row rows[] = {{3, 0, 0},       {3, 1, 2},           {3, 2, 2},          {3, 3, 0},
                          {3, 4, 0},       {3, 5, 0},           {3, 6, 5},          {3, 7, 0},
                          {3, highest, 0}, {4, 6, 0},           {4, 1, 0},          {2, 2, 0},
                          {0, 2, 0},       {3, 0x100000002, 0}, {0x100000003, 2, 0}};
  for (const Row& row : rows) {
    const EntryID entry = addSwitch(
        {{"Device Vendor ID", number64(row.vendor)}, {"Device Model ID", number64(row.model)}});
    const HeldDevice device(UID);
    EXPECT_EQ(row.bays, device->bayCount()) << "vendor " << row.vendor << " model " << row.model;
    EXPECT_EQ(row.vendor, device->vendorID());
    EXPECT_EQ(row.model, device->modelID());
    MemoryRegistry::terminate(entry);
  }
}

TEST_F(DeviceIdentity, MissingPropertiesOverwriteTheDefaultsWithTheNeutralAnswers) {
  addSwitch({});
  const HeldDevice device(UID);
  EXPECT_EQ("", device->modelName());
  EXPECT_EQ("", device->vendorName());
  EXPECT_EQ(0U, device->modelID());
  EXPECT_EQ(0U, device->vendorID());
  EXPECT_EQ(0, device->deviceStatus());
  EXPECT_EQ(0, device->bayCount());
}

TEST_F(DeviceIdentity, IsReadModelFirstAndNameBeforeNumber) {
  using Identity = std::tuple<std::string, std::uint64_t, std::string, std::uint64_t, int>;
  const Identity rows[] = {{"", 2, "Example Storage", 3, 2},
                           {"Two Bay", 0, "Example Storage", 3, 0},
                           {"Two Bay", 2, "", 3, 2},
                           {"Two Bay", 2, "Example Storage", 0, 0}};
  two.addSwitch();
  std::uint64_t failing = 0;
  for (const Identity& expected : rows) {
    fail(Operation::IORegistryEntryCreateCFProperty, ++failing);
    const HeldDevice device(UID);
    EXPECT_EQ(expected, Identity(device->modelName(), device->modelID(), device->vendorName(),
                                 device->vendorID(), device->bayCount()))
        << "read " << failing << " fails";
    EXPECT_EQ(0, device->deviceStatus()) << "read " << failing << " fails";
  }
}

TEST_F(DeviceIdentity, AnUnknownModelLeavesTheBayCountAsItWas) {
  two.addSwitch();
  const HeldDevice device(UID);
  MemoryRegistry::setProperty(two.switchEntry(), "Device Model ID", 4);
  MemoryRegistry::setProperty(two.switchEntry(), "Device Model Name", "Other");
  const unsigned handle = MemoryRegistry::handle(two.switchEntry());
  device->setBasicProperties(handle);
  IOObjectRelease(handle);
  EXPECT_EQ(2, device->bayCount());
  EXPECT_EQ(4U, device->modelID());
  EXPECT_EQ("Other", device->modelName());
}

TEST_F(DeviceIdentity, IsReadOnceOnly) {
  two.complete();
  const HeldDevice device(UID);
  MemoryRegistry::setProperty(two.switchEntry(), "Device Model Name", "Renamed");
  device->refresh();
  EXPECT_EQ("Two Bay", device->modelName());
  expectKept(two.bridge(), 3);  // found, waited beneath for disks, searched for sets
}

TEST_F(DeviceIdentity, TheSwitchIsFoundByItsUIDAmongOthers) {
  EnclosureBuilder other(host, TestSupport::fiveBay(UID + 1, 1));
  other.addSwitch();
  two.addSwitch();
  const HeldDevice device(UID);
  EXPECT_EQ("Two Bay", device->modelName());
  const unsigned entry = device->findRegistryEntry();
  EXPECT_EQ(two.switchEntry(), MemoryRegistry::entryOf(entry));
  EXPECT_EQ(2U, kept(two.switchEntry()));  // the caller's and the waiting event's
  IOObjectRelease(entry);
}

TEST_F(DeviceIdentity, AUIDWithTheTopBitSetStillFindsItsSwitch) {
  constexpr std::uint64_t uid = 0x8003e9a1b2c3d4e5;
  EnclosureBuilder enclosure(host, TestSupport::twoBay(uid));
  enclosure.addSwitch();
  const HeldDevice device(uid);
  EXPECT_EQ(0, device->deviceStatus());
  EXPECT_EQ("Two Bay", device->modelName());
}

TEST_F(DeviceIdentity, OnlyARegisteredSwitchIsFound) {
  MemoryRegistry::setState(addSwitch({}), 0);
  const HeldDevice device(UID);
  EXPECT_EQ(-1, device->deviceStatus());
}

TEST_F(DeviceIdentity, OnlyASwitchIsFoundByTheUID) {
  addEntry(host.lanePort(0), "IOThunderboltPort", "", "", {{"UID", number64(UID)}});
  const HeldDevice device(UID);
  EXPECT_EQ(-1, device->deviceStatus());
}

TEST_F(DeviceIdentity, MatchesTheDeviceOfItsTypeAndIdentifierOnly) {
  const HeldDevice device(UID);
  struct Row {
    std::uint64_t id;
    std::uint32_t type;
    bool matches;
  };
  constexpr Row rows[] = {
      {UID, 4, true},      {UID, 3, false},          {UID, 5, false},
      {UID, 0, false},     {UID + 1, 4, false},      {0, 4, false},
      {UID + 1, 3, false}, {UID, 0xFFFFFFFF, false}, {UID & 0xFFFFFFFF, 4, false}};
  for (const Row& row : rows) {
    EXPECT_EQ(row.matches, device->matchesDevice({row.id, row.type}))
        << "id " << row.id << " type " << row.type;
  }
}

TEST_F(DeviceIdentity, TheEndOfADeviceLogsNothingAndTouchesNoEntry) {
  two.complete().addDisk(1);
  HeldDevice device(UID);
  log().clear();
  const auto calls = MemoryRegistry::calls();
  device.drop();
  EXPECT_EQ(calls, MemoryRegistry::calls());
  EXPECT_THAT(log().lines(), testing::IsEmpty());
  expectKept(two.bridge(), 2);  // found, searched for sets
}

}  // namespace
}  // namespace RAIDMonitoring
