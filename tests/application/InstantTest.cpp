#include "application/watch/Instant.h"

#include <gtest/gtest.h>

#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Cause;
using Program::DeviceEvent;
using Program::Instant;
using Program::VolumeEvent;
using Kind = VolumeEvent::Kind;

VolumeEvent volume(Kind kind, RAIDVolumeState state, std::uint64_t enclosure = 7) {
  return {kind, volumeNamed("Projects", state, {}), enclosureOf(2, enclosure)};
}

DeviceEvent gone(std::uint64_t uid) { return {DeviceEvent::Kind::Disappeared, uid}; }
DeviceEvent appeared(std::uint64_t uid) { return {DeviceEvent::Kind::Appeared, uid}; }

VolumeEvent eventOf(const Cause& cause) { return std::get<VolumeEvent>(cause.event.what); }

TEST(Instant, AChangeThatIsReportedAgainIsOneWithItsLastContent) {
  Instant instant;
  instant.add({5, volume(Kind::Updated, VolumeDegraded)});
  VolumeEvent again = volume(Kind::Updated, VolumeDegraded);
  again.volume.members = {{"A", MemberFailed, "", 2}};
  instant.add({6, again});
  const auto causes = instant.take();
  ASSERT_EQ(1U, causes.size());
  EXPECT_EQ(5, causes[0].event.time);
  EXPECT_EQ(1U, eventOf(causes[0]).volume.members.size());
}

TEST(Instant, AVolumeThatAppearsAndIsReportedAgainIsNew) {
  Instant instant;
  instant.add({5, volume(Kind::Appeared, VolumeOnline)});
  instant.add({5, volume(Kind::Updated, VolumeOnline)});
  const auto causes = instant.take();
  ASSERT_EQ(1U, causes.size());
  EXPECT_EQ(Kind::Appeared, eventOf(causes[0]).kind);
}

TEST(Instant, AnotherStateIsAnotherChange) {
  Instant instant;
  instant.add({5, volume(Kind::Updated, VolumeDegraded)});
  instant.add({5, volume(Kind::Updated, VolumeFailed)});
  instant.add({5, volume(Kind::Updated, VolumeDegraded)});
  EXPECT_EQ(3U, instant.take().size());
}

TEST(Instant, AnotherEnclosureHasOtherBays) {
  Instant instant;
  instant.add({5, volume(Kind::Updated, VolumeDegraded, 7)});
  instant.add({5, volume(Kind::Updated, VolumeDegraded, 8)});
  instant.add({5, volume(Kind::Updated, VolumeDegraded, 7)});
  EXPECT_EQ(2U, instant.take().size());
}

TEST(Instant, AVolumeThatGoesAndComesBackIsTwoThings) {
  Instant instant;
  instant.add({5, volume(Kind::Disappeared, VolumeOnline)});
  instant.add({5, volume(Kind::Appeared, VolumeOnline)});
  instant.add({5, volume(Kind::Updated, VolumeOnline)});
  EXPECT_EQ(2U, instant.take().size());
}

TEST(Instant, VolumesGoWithTheirEnclosure) {
  Instant instant;
  instant.add({5, gone(7)});
  instant.add({5, volume(Kind::Disappeared, VolumeOnline, 7)});
  instant.add({5, appeared(9)});
  instant.add({5, volume(Kind::Disappeared, VolumeOnline, 7)});
  const auto causes = instant.take();
  ASSERT_EQ(2U, causes.size());
  EXPECT_EQ(2U, causes[0].lost.size());
  EXPECT_TRUE(causes[1].lost.empty());
}

TEST(Instant, AVolumeThatSpansEnclosuresGoesWithTheOneThatIsLeaving) {
  Instant instant;
  instant.add({5, gone(7)});
  instant.add({5, volume(Kind::Disappeared, VolumeOnline, 8)});
  const auto causes = instant.take();
  ASSERT_EQ(1U, causes.size());
  EXPECT_EQ(8U, causes[0].lost.at(0).enclosure.uid);
}

TEST(Instant, AVolumeThatGoesLaterInAnEnclosureThatStaysIsAThingOfItsOwn) {
  Instant instant;
  instant.add({5, gone(7)});
  instant.add({5, volume(Kind::Updated, VolumeOnline, 8)});
  instant.add({5, volume(Kind::Disappeared, VolumeOnline, 8)});
  EXPECT_EQ(3U, instant.take().size());
}

TEST(Instant, TheLogKeepsItsPlace) {
  Instant instant;
  const Program::LogEvent line{Pelago::Logger::Level::Debug, "C", "T"};
  instant.add({5, line});
  instant.add({5, volume(Kind::Updated, VolumeDegraded)});
  instant.add({5, line});
  instant.add({5, volume(Kind::Updated, VolumeDegraded)});
  const auto causes = instant.take();
  ASSERT_EQ(3U, causes.size());
  EXPECT_TRUE(std::holds_alternative<VolumeEvent>(causes[1].event.what));
}

TEST(Instant, TheNextOneStartsAnew) {
  Instant instant;
  instant.add({5, gone(7)});
  instant.take();
  instant.add({6, volume(Kind::Disappeared, VolumeOnline, 7)});
  EXPECT_EQ(1U, instant.take().size());
  EXPECT_TRUE(instant.take().empty());
}

}  // namespace
}  // namespace ProgramTest
