#include "application/exec/EventEnvironment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::DeviceEvent;
using Program::VolumeEvent;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

std::vector<std::string> ownOf(const Program::WatchEvent& event) {
  std::vector<std::string> own;
  for (const std::string& variable : Program::environmentFor(event)) {
    if (variable.rfind("RAIDMONITOR_", 0) == 0) own.push_back(variable);
  }
  return own;
}

VolumeEvent degraded(VolumeEvent::Kind kind) {
  VolumeEvent event{kind,
                    volumeNamed("Projects", VolumeDegraded,
                                {{"B-2", MemberFailed, "", 2},
                                 {"C-3", MemberNotFound, "", -1},
                                 {"A-1", MemberOnline, "", 1}}),
                    enclosureOf(2)};
  event.volume.device = 7;
  return event;
}

TEST(EventEnvironment, OfAVolume) {
  EXPECT_THAT(
      ownOf({6000, degraded(VolumeEvent::Kind::Updated)}),
      UnorderedElementsAre(
          "RAIDMONITOR_EVENT=raid-updated", "RAIDMONITOR_TIME=6000",
          "RAIDMONITOR_DEVICE=0x0000000000000007", "RAIDMONITOR_ENCLOSURE=Example Storage Two Bay",
          "RAIDMONITOR_VOLUME_NAME=Projects", "RAIDMONITOR_VOLUME_UUID=5E70000-0000-Projects",
          "RAIDMONITOR_LEVEL=mirror", "RAIDMONITOR_STATE=degraded", "RAIDMONITOR_BAYS=1 2 ?",
          "RAIDMONITOR_MEMBERS=1:online:A-1 2:failed:B-2 ?:not-found:C-3"));
}

TEST(EventEnvironment, OfAVolumeThatIsGoneHasNoBays) {
  EXPECT_THAT(ownOf({6000, degraded(VolumeEvent::Kind::Disappeared)}),
              Not(Contains(StartsWith("RAIDMONITOR_BAYS"))));
}

TEST(EventEnvironment, OfADeviceAndOfDroppedEvents) {
  EXPECT_THAT(ownOf({5, DeviceEvent{DeviceEvent::Kind::Disappeared, 7}}),
              UnorderedElementsAre("RAIDMONITOR_EVENT=device-disappeared", "RAIDMONITOR_TIME=5",
                                   "RAIDMONITOR_DEVICE=0x0000000000000007"));
  EXPECT_THAT(ownOf({5, Program::DroppedEvent{3}}),
              UnorderedElementsAre("RAIDMONITOR_EVENT=dropped", "RAIDMONITOR_TIME=5",
                                   "RAIDMONITOR_COUNT=3"));
}

TEST(EventEnvironment, KeepsTheProcesssOwnButWhatAWatchAboveHasSet) {
  setenv("RAIDMONITOR_STATE", "failed", 1);
  setenv("ANOTHER", "kept", 1);
  const auto variables = Program::environmentFor({5, DeviceEvent{DeviceEvent::Kind::Appeared, 7}});
  EXPECT_THAT(variables, Contains("ANOTHER=kept"));
  EXPECT_THAT(variables, Not(Contains(StartsWith("RAIDMONITOR_STATE"))));
  unsetenv("RAIDMONITOR_STATE");
  unsetenv("ANOTHER");
}

TEST(EventEnvironment, HasNoControlCharactersAndAnEnd) {
  VolumeEvent event = degraded(VolumeEvent::Kind::Updated);
  event.volume.name = HostileName + std::string(1, '\0') + std::string(100000, 'x');
  event.volume.uuid = event.volume.name;
  event.enclosure.vendor = event.volume.name;
  event.volume.members.assign(1000, {HostileName + std::string(1000, ' '), MemberOnline, "", 1});
  std::size_t size = 0;
  for (const std::string& variable : ownOf({6000, event})) {
    EXPECT_TRUE(isHarmless(variable)) << variable.substr(0, 100);
    EXPECT_THAT(variable, Not(HasSubstr("\n")));
    EXPECT_THAT(variable, Not(HasSubstr(std::string(1, '\0'))));
    size += variable.size();
  }
  EXPECT_LT(size, 100000U);
}

}  // namespace
}  // namespace ProgramTest
