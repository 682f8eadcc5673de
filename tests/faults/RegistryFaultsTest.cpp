#include <gtest/gtest.h>

#include <cstdio>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/RecordedShares.h"

namespace FaultTest {
namespace {

// Every line that tells of a failure, and the debug lines that tell of something missing.
const char* const FailureTexts[] = {
    "message [RAIDMonitor] RAIDVolume::EntryFromUUID - Cannot find back the PCI Bridge object",
    "message [RAIDMonitor] RAIDVolume::EntryFromUUID - couldn't create iterator on PCI Bridge",
    "message [RAIDMonitor] RAIDVolume::refresh - Couldn't find the RAID Set entry for UUID",
    "message [RAIDMonitor] RAIDVolume::findMembers - cannot get set members",
    "message [RAIDMonitor] AppleRAIDMember::AppleRAIDMember - Cannot find registry entry for "
    "AppleRAID member",
    "debug [RAIDMonitor] AppleRAIDMember::refresh - Cannot find registry entry for AppleRAID "
    "member",
    "message [RAIDMonitor] AppleRAIDMember::findRegistryEntry - couldn't find PCI Bridge registry "
    "entry",
    "message [RAIDMonitor] AppleRAIDMember::findRegistryEntry - cannot create iterator",
    "message [RAIDMonitor] AppleRAIDMember::entryFromUUID - Cannot find back the PCI Bridge object",
    "message [RAIDMonitor] AppleRAIDMember::entryFromUUID - couldn't create iterator on PCI Bridge",
    "message [RAIDMonitor] AppleRAIDMember::readProperties - Unable to found "
    "AppleRAID-MemberStatus IORegustry entry path",
    "message [RAIDMonitor] IOObjectFromDevice - Cannot create matching dictionary. Out of memory?",
    "message [RAIDMonitor] IOObjectFromDevice - Cannot create UUID matching dictionary. Out of "
    "memory?",
    "message [RAIDMonitor] IOObjectFromDevice - Cannot create UID CFNumber. Out of memory?",
    "message [RAIDMonitor] ThunderboltDevice::findRegistryEntry() - Thunderbolt device with UUID",
    "message [RAIDMonitor-ThunderboltDevice] Cannot find IOThunderboltSwitch with UUID 0x016llx",
    "message [RAIDMonitor] ThunderboltDevice::waitForUpstreamPort - could not create iterator for "
    "ports",
    "debug [RAIDMonitor] ThunderboltDevice::waitForUpstreamPort - PCI Path is not available yet. "
    "Waiting...",
    "message [RAIDMonitor] ThunderboltDevice::waitForPCIBridge - can't read back the upstream "
    "port's PCI Path property",
    "message [RAIDMonitor] ThunderboltDevice::waitForPCIBridge - can't read back the upstream "
    "port's PCI Device property",
    "message [RAIDMonitor] ThunderboltDevice:: Cannot create entry",
    "message [RAIDMonitor] ThunderboltDevice:: Cannot create iterator for member entry",
    "message [RAIDMonitor] ThunderboltDevice::waitForDisks - couldn't create iterator on PCI "
    "Bridge",
    "message [RAIDMonitor] ThunderboltDevice::waitForDisks - Couldn't create iterator on Partition "
    "Scheme",
    "message [RAIDMonitor] ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object",
    "message [RAIDMonitor] ThunderboltDevice::findRAIDs - couldn't create iterator on PCI Bridge",
    "debug [RAIDMonitor] ThunderboltDevice::locationOfMember - cannot find member registry entry",
    "message [RAIDMonitor] ThunderboltDevice::locationOfMember - cannot find member registry entry",
    "message [RAIDMonitor] ThunderboltDevice::locationOfMember - Cannot get parent iterator for "
    "member entry",
    "message [RAIDMonitor] ThunderboltDevice::entryFromUUID - couldn't create iterator on PCI "
    "Bridge",
    "info [Quovex Raid Monitor]  RAIDMonitor::refresh() - New error detected on RAID.",
};

void report(const Tally& tally, const std::string& scenario) {
  for (const auto& complaint : tally.complaints)
    ADD_FAILURE() << complaint;
  std::printf("%s: %llu operations that can fail, stride %u, %llu faults tried\n", scenario.c_str(),
              static_cast<unsigned long long>(tally.operations), tally.stride,
              static_cast<unsigned long long>(tally.faults));
}

// One test, because every text of the table has to be met on the whole.
TEST(RegistryFaults, EveryOperationOfEveryStagedScenarioMayFail) {
  bool isComplete = true;
  for (const Scenario& scenario : stagedScenarios()) {
    const Tally tally = tryRegistryFaults(scenario);
    report(tally, scenario.name);
    EXPECT_LT(0U, tally.faults);
    isComplete = isComplete && tally.stride == 1;
  }
  // With strides, as under sanitizers, a text may be passed over.
  if (!isComplete) return;
  for (const char* text : FailureTexts)
    EXPECT_EQ(1U, loggedTexts().count(text)) << text;
}

class RecordedRegistryFaults : public testing::TestWithParam<RecordedShare> {};

TEST_P(RecordedRegistryFaults, EveryOperationMayFail) {
  const Tally tally = tryRegistryFaults(recordedScenario(GetParam().recording), GetParam().share);
  report(tally, GetParam().recording);
  EXPECT_LT(0U, tally.faults);
}

INSTANTIATE_TEST_SUITE_P(Recordings, RecordedRegistryFaults, testing::ValuesIn(recordedShares()),
                         nameOfShare);

}  // namespace
}  // namespace FaultTest
