#include "application/check/Assessment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace Program;
using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;

MemberSnapshot memberIn(int slot, MemberState state = MemberOnline) {
  MemberSnapshot member;
  member.uuid = "M" + std::to_string(slot);
  member.state = state;
  member.slot = slot;
  return member;
}

EnclosureVolumes with(std::vector<VolumeSnapshot> volumes) {
  return {enclosureOf(2), std::move(volumes)};
}

EnclosureVolumes comingUp() {
  EnclosureVolumes enclosure = with({});
  enclosure.device.bridge.clear();
  return enclosure;
}

VolumeSnapshot volumeIn(RAIDVolumeState state) {
  return volumeNamed("Projects", state, {memberIn(1), memberIn(2)});
}

VolumeSnapshot onlineWith(MemberState state) {
  return volumeNamed("Projects", VolumeOnline, {memberIn(1), memberIn(2, state)});
}

Finding worst(const std::vector<EnclosureVolumes>& enclosures, const Expectations& expected = {},
              const std::vector<std::string>& failures = {}) {
  return assess(enclosures, expected, failures).front();
}

TEST(Assessment, EachStateOfAVolumeHasItsSeverity) {
  const std::pair<RAIDVolumeState, Severity> rows[] = {{VolumeOnline, Severity::Ok},
                                                       {VolumeDegraded, Severity::Warning},
                                                       {VolumeInitializing, Severity::Warning},
                                                       {VolumeTerminating, Severity::Warning},
                                                       {VolumeFailed, Severity::Critical},
                                                       {VolumeOffline, Severity::Critical},
                                                       {VolumeCrossDevice, Severity::Unknown},
                                                       {VolumeUnknown, Severity::Unknown}};
  for (const auto& [state, severity] : rows)
    EXPECT_EQ(severity, worst({with({volumeIn(state)})}).severity) << state;
}

TEST(Assessment, EachStateOfADiskOfAnOnlineVolumeHasItsSeverity) {
  const std::pair<MemberState, Severity> rows[] = {
      {MemberOnline, Severity::Ok},        {MemberStandby, Severity::Warning},
      {MemberUnknown, Severity::Warning},  {MemberFailed, Severity::Critical},
      {MemberOffline, Severity::Critical}, {MemberNotFound, Severity::Critical}};
  for (const auto& [state, severity] : rows)
    EXPECT_EQ(severity, worst({with({onlineWith(state)})}).severity) << state;
}

TEST(Assessment, AStandbyDiskAddsNothingToAVolumeThatIsNotOnline) {
  VolumeSnapshot volume = onlineWith(MemberStandby);
  volume.state = VolumeDegraded;
  EXPECT_EQ(Severity::Warning, worst({with({volume})}).severity);
  volume.state = VolumeCrossDevice;
  EXPECT_EQ(Severity::Unknown, worst({with({volume})}).severity);
}

TEST(Assessment, CriticalComesBeforeWarningBeforeUnknownBeforeOK) {
  const std::vector<EnclosureVolumes> enclosures = {
      with({volumeIn(VolumeOnline), volumeIn(VolumeDegraded), volumeIn(VolumeFailed)})};
  std::vector<Severity> order;
  for (const Finding& finding : assess(enclosures, {}, {"the registry could not be read"}))
    order.push_back(finding.severity);
  EXPECT_THAT(order,
              ElementsAre(Severity::Critical, Severity::Warning, Severity::Unknown, Severity::Ok));
}

TEST(Assessment, OfSeveralCriticalVolumesTheOneThatIsLostMostComesFirst) {
  VolumeSnapshot degraded = volumeNamed("Degraded", VolumeDegraded, {memberIn(2, MemberFailed)});
  VolumeSnapshot offline = volumeNamed("Offline", VolumeOffline, {memberIn(1)});
  VolumeSnapshot failed = volumeNamed("Failed", VolumeFailed, {memberIn(1)});
  Expectations expected;
  expected.uuids = {"elsewhere"};
  std::vector<std::string> order;
  for (const Finding& finding : assess({with({degraded, offline, failed})}, expected, {}))
    order.push_back(finding.headline.substr(0, finding.headline.find(':')));
  EXPECT_THAT(order, ElementsAre("Failed", "Offline", "volume elsewhere is missing", "Degraded"));
}

TEST(Assessment, TheHeadlineNamesVolumeDiskBayAndEnclosure) {
  EXPECT_EQ(
      "Projects: mirror online, disk failed in bay 2 (Example Storage Two Bay "
      "0x0000000000000007)",
      worst({with({onlineWith(MemberFailed)})}).headline);
  EXPECT_EQ(
      "Projects: mirror online, disk missing from bay 2 (Example Storage Two Bay "
      "0x0000000000000007)",
      worst({with({onlineWith(MemberNotFound)})}).headline);
}

TEST(Assessment, TheHeadlineNamesAllBaysWhenNoDiskIsInTrouble) {
  EXPECT_EQ("Projects: mirror degraded, bays 1, 2 (Example Storage Two Bay 0x0000000000000007)",
            worst({with({volumeIn(VolumeDegraded)})}).headline);
}

TEST(Assessment, ABayThatIsNotKnownIsNotMadeUp) {
  const VolumeSnapshot volume =
      volumeNamed("Projects", VolumeOffline, {memberIn(1), memberIn(-1, MemberNotFound)});
  const Finding finding = worst({with({volume})});
  EXPECT_EQ(
      "Projects: mirror offline, disk missing, bay not known (Example Storage Two Bay "
      "0x0000000000000007)",
      finding.headline);
  EXPECT_EQ(
      "Projects: mirror offline, bay 1 online, disk M (bay not known) missing; Example Storage "
      "Two Bay, 2 bays, 0x0000000000000007; 5E70000-0000-Projects",
      finding.details);
}

TEST(Assessment, AVolumeWithoutANameGoesByItsUUIDAndALongNameIsCut) {
  VolumeSnapshot volume = volumeIn(VolumeFailed);
  volume.name = "";
  EXPECT_EQ(0U, worst({with({volume})}).headline.find("5E70000-0000-Projects: mirror failed"));
  volume.name = std::string(100000, 'x');
  EXPECT_LT(worst({with({volume})}).headline.size(), 400U);
}

TEST(Assessment, AnEnclosureThatComesUpIsAWarningAndExplainsThatNothingIsThere) {
  const auto findings = assess({comingUp()}, {}, {});
  ASSERT_EQ(1U, findings.size());
  EXPECT_EQ(Severity::Warning, findings.front().severity);
  EXPECT_EQ("Example Storage Two Bay 0x0000000000000007 is coming up", findings.front().headline);
}

TEST(Assessment, NothingIsUnknownUnlessItIsWhatSomebodyExpects) {
  EXPECT_EQ(Severity::Unknown, worst({}).severity);
  EXPECT_EQ(Severity::Unknown, worst({with({})}).severity);
  Expectations none;
  none.volumes = 0;
  EXPECT_THAT(assess({with({})}, none, {}), IsEmpty());
}

TEST(Assessment, AUUIDIsFoundInWhateverCaseItIsWritten) {
  Expectations expected;
  expected.uuids = {"5e70000-0000-projects", "5E70000-0000-PROJECTS"};
  EXPECT_EQ(Severity::Ok, worst({with({volumeIn(VolumeOnline)})}, expected).severity);
  expected.uuids = {"5E70000-0000-Project"};
  EXPECT_EQ(Severity::Critical, worst({with({volumeIn(VolumeOnline)})}, expected).severity);
}

TEST(Assessment, ASetThatTwoEnclosuresReportCountsOnce) {
  Expectations expected;
  expected.volumes = 2;
  const Finding finding =
      worst({with({volumeIn(VolumeOnline)}), with({volumeIn(VolumeOnline)})}, expected);
  EXPECT_EQ(Severity::Critical, finding.severity);
  EXPECT_EQ("1 volume where 2 are expected", finding.headline);
}

TEST(Assessment, WhatKeptItFromLookingOutweighsAllThatIsFine) {
  const Finding finding = worst({with({volumeIn(VolumeOnline)})}, {}, {"no walk"});
  EXPECT_EQ(Severity::Unknown, finding.severity);
  EXPECT_EQ("no walk", finding.headline);
}

}  // namespace
}  // namespace ProgramTest
