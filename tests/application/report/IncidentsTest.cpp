#include "application/report/Incidents.h"

#include <gtest/gtest.h>

#include "tests/application/report/Stories.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Incident;
using Program::incidentsOf;
using Program::Sight;

TEST(IncidentsTest, ThereAreNoneWhileAllIsWell) {
  EXPECT_TRUE(incidentsOf(storyWith({{0, {}}, {6000, {wellPicture()}}}, 8000)).empty());
  EXPECT_EQ(nullptr, Program::worstOf({}));
}

TEST(IncidentsTest, OneLastsAsLongAsTheVolumeIsNotOnline) {
  const auto incidents = incidentsOf(storyWith({{0, {wellPicture()}},
                                                {2000, {degradedPicture(MemberFailed)}},
                                                {4000, {degradedPicture(MemberStandby)}},
                                                {6000, {wellPicture()}}},
                                               8000));
  ASSERT_EQ(1U, incidents.size());
  EXPECT_EQ(Incident::Kind::Volume, incidents[0].kind);
  EXPECT_EQ(2000, incidents[0].from);
  EXPECT_EQ(6000, incidents[0].to);
  EXPECT_EQ(VolumeDegraded, incidents[0].worst);
  ASSERT_EQ(1U, incidents[0].members.size());
  EXPECT_EQ(2, incidents[0].members[0].bay);
  EXPECT_EQ(MemberFailed, incidents[0].members[0].state) << "the worst of its states";
}

TEST(IncidentsTest, AMemberIsToldInTheBayInWhichItWasAtItsWorst) {
  const auto incidents =
      incidentsOf(storyWith({{0, {degradedPicture(MemberFailed)}},
                             {2000, {degradedPicture(MemberNotFound, Sight::Inferred)}}},
                            4000));
  ASSERT_EQ(1U, incidents.size());
  EXPECT_EQ(Sight::Seen, incidents[0].members.at(0).sight);
  EXPECT_TRUE(incidents[0].fromStart);
  EXPECT_FALSE(incidents[0].to);
}

TEST(IncidentsTest, AVolumeThatIsOnlineWithoutADiskIsOne) {
  const auto picture = pictureOf(
      {volumeOf("Projects", VolumeOnline, {memberIn(1, MemberOnline), memberIn(2, MemberFailed)})});
  const auto incidents = incidentsOf(storyWith({{0, {picture}}}, 2000));
  ASSERT_EQ(1U, incidents.size());
  EXPECT_EQ(VolumeOnline, incidents[0].worst);
  EXPECT_GT(rankOf(incidents[0]), 0);
}

TEST(IncidentsTest, AnEnclosureThatIsUnpluggedIsOneWithAllItsVolumesUntilTheyAreBack) {
  const auto incidents = incidentsOf(storyWith(
      {{0, {wellPicture()}}, {2000, {}}, {4000, {pictureOf({})}}, {6000, {wellPicture()}}}, 8000));
  ASSERT_EQ(1U, incidents.size());
  EXPECT_EQ(Incident::Kind::Unplugged, incidents[0].kind);
  EXPECT_EQ(2000, incidents[0].from);
  EXPECT_EQ(6000, incidents[0].to);
  ASSERT_EQ(1U, incidents[0].volumes.size());
  EXPECT_EQ("Projects", incidents[0].volumes[0].name);
}

TEST(IncidentsTest, UnpluggingEndsWhatWentOnInTheEnclosure) {
  const auto incidents =
      incidentsOf(storyWith({{0, {degradedPicture(MemberFailed)}}, {2000, {}}}, 4000));
  ASSERT_EQ(2U, incidents.size());
  EXPECT_EQ(2000, incidents[0].to);
  EXPECT_TRUE(incidents[0].endedByUnplugging);
  EXPECT_FALSE(incidents[1].to);
}

TEST(IncidentsTest, AVolumeThatGoesWithoutItsEnclosureIsOne) {
  const auto incidents = incidentsOf(
      storyWith({{0, {wellPicture()}}, {2000, {pictureOf({})}}, {4000, {wellPicture()}}}, 6000));
  ASSERT_EQ(1U, incidents.size());
  EXPECT_EQ(Incident::Kind::Gone, incidents[0].kind);
  EXPECT_EQ(2000, incidents[0].from);
  EXPECT_EQ(4000, incidents[0].to);
}

TEST(IncidentsTest, AVolumeThatWasGoneBeforeItsEnclosureIsUnpluggedStaysGone) {
  const auto incidents =
      incidentsOf(storyWith({{0, {wellPicture()}}, {2000, {pictureOf({})}}, {4000, {}}}, 6000));
  ASSERT_EQ(2U, incidents.size());
  EXPECT_EQ(Incident::Kind::Gone, incidents[0].kind);
  EXPECT_FALSE(incidents[0].to);
  EXPECT_EQ(Incident::Kind::Unplugged, incidents[1].kind);
  EXPECT_TRUE(incidents[1].volumes.empty());
}

TEST(IncidentsTest, OneKnowsWhetherTheWorstWasAllThereWas) {
  auto offline = degradedPicture(MemberFailed);
  offline.volumes[0].state = VolumeOffline;
  const auto incidents =
      incidentsOf(storyWith({{0, {degradedPicture(MemberFailed)}}, {2000, {offline}}}, 4000));
  ASSERT_EQ(1U, incidents.size());
  EXPECT_EQ(VolumeOffline, incidents[0].worst);
  EXPECT_TRUE(incidents[0].severalStates);
  EXPECT_FALSE(
      incidentsOf(storyWith({{0, {offline}}, {2000, {wellPicture()}}}, 4000)).at(0).severalStates);
}

TEST(IncidentsTest, WhatIsNotOverIsWorseThanWhatIs) {
  Incident over;
  over.worst = VolumeFailed;
  over.to = 4000;
  Incident lasting;
  lasting.worst = VolumeDegraded;
  EXPECT_EQ(VolumeDegraded, Program::worstOf({over, lasting})->worst);
  lasting.to = 4000;
  EXPECT_EQ(VolumeFailed, Program::worstOf({lasting, over})->worst);
}

}  // namespace
}  // namespace ProgramTest
