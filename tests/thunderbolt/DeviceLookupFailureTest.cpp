#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;

class DeviceLookupFailure : public DeviceTest {
 protected:
  // The constructor's own message, which follows the one of the look-up.
  static LogLine noSwitch() {
    return message("Cannot find IOThunderboltSwitch with UUID 0x016llx",
                   "RAIDMonitor-ThunderboltDevice");
  }
  static LogLine notFound() {
    return message(
        "ThunderboltDevice::findRegistryEntry() - Thunderbolt device with UUID "
        "'0x00030712abcd0042' was not found.");
  }
  static void expectDefaults(const HeldDevice& device) {
    EXPECT_EQ("invalid", device->modelName());
    EXPECT_EQ("invalid", device->vendorName());
    EXPECT_EQ(0U, device->modelID());
    EXPECT_EQ(0U, device->vendorID());
    EXPECT_EQ(-1, device->deviceStatus());
    EXPECT_EQ(0, device->bayCount());
    EXPECT_EQ("", device->pciBridgePath());
    EXPECT_TRUE(device->raidVolumes().empty());
  }
};

TEST_F(DeviceLookupFailure, AnUnknownUIDYieldsBothMessagesAndAHostWithDefaults) {
  const HeldDevice device(UID);
  EXPECT_THAT(log().lines(), ElementsAre(notFound(), noSwitch()));
  expectDefaults(device);
}

TEST_F(DeviceLookupFailure, TheUIDIsPrintedWithSixteenDigitsInOneMessageAndNotAtAllInTheOther) {
  const HeldDevice device(0x1a);
  EXPECT_THAT(
      log().lines(),
      ElementsAre(message("ThunderboltDevice::findRegistryEntry() - Thunderbolt device with "
                          "UUID '0x000000000000001a' was not found."),
                  noSwitch()));
}

TEST_F(DeviceLookupFailure, NothingRetriesTheSearch) {
  const HeldDevice device(UID);
  EXPECT_EQ(0U, application().queuedEvents());
  two.complete().addDisk(1);
  log().clear();
  const auto calls = MemoryRegistry::calls();
  pump().turns(30);
  EXPECT_EQ(calls, MemoryRegistry::calls());
  EXPECT_THAT(log().lines(), testing::IsEmpty());
  expectDefaults(device);
}

TEST_F(DeviceLookupFailure, EveryStepThatRunsOutOfMemoryHasItsMessage) {
  struct Row {
    Operation operation;
    std::uint64_t n;
    const char* text;
  };
  const Row rows[] = {
      {Operation::CFDictionaryCreateMutable, 1,
       "IOObjectFromDevice - Cannot create matching dictionary. Out of memory?"},
      {Operation::CFDictionaryCreateMutable, 2,
       "IOObjectFromDevice - Cannot create UUID matching dictionary. Out of memory?"},
      {Operation::CFNumberCreate, 1,
       "IOObjectFromDevice - Cannot create UID CFNumber. Out of memory?"}};
  two.complete().addDisk(1);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    fail(row.operation, row.n);
    const HeldDevice device(UID);
    EXPECT_THAT(log().take(), ElementsAre(message(row.text), noSwitch()));
    expectDefaults(device);
    EXPECT_EQ(0U, MemoryRegistry::calls(Operation::IOServiceGetMatchingService));
    EXPECT_EQ(0U, MemoryRegistry::accounts().values);
  }
}

TEST_F(DeviceLookupFailure, AFailedMatchIsASwitchThatIsNotThere) {
  two.complete().addDisk(1);
  fail(Operation::IOServiceGetMatchingService, 1);
  const HeldDevice device(UID);
  EXPECT_THAT(log().lines(), ElementsAre(notFound(), noSwitch()));
  expectDefaults(device);
}

}  // namespace
}  // namespace RAIDMonitoring
