#include "application/report/StoryWords.h"

#include <gtest/gtest.h>

#include "tests/application/report/Stories.h"
#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Picture;
using Program::Sight;
using Program::Story;

std::string headline(const Story& story) {
  return Program::headlineOf(story, Program::incidentsOf(story));
}

TEST(StoryWordsTest, TheHeadlineNamesVolumeBayAndTime) {
  EXPECT_EQ(
      "Projects (mirror in Example Storage Two Bay) was degraded from 00:02.000 to 00:06.000: the "
      "disk in bay 2 failed.",
      headline(storyWith(
          {{0, {wellPicture()}}, {2000, {degradedPicture(MemberFailed)}}, {6000, {wellPicture()}}},
          8000)));
}

TEST(StoryWordsTest, WhatIsNotOverHasNoEnd) {
  EXPECT_EQ(
      "Projects (mirror in Example Storage Two Bay) has been degraded since 00:02.000: the disk of "
      "bay 2 (inferred) was missing.",
      headline(storyWith(
          {{0, {wellPicture()}}, {2000, {degradedPicture(MemberNotFound, Sight::Inferred)}}},
          8000)));
}

TEST(StoryWordsTest, WhatWasSoFromTheStartSaysSo) {
  const Picture bad = degradedPicture(MemberOffline, Sight::Nowhere);
  EXPECT_EQ(
      "Projects (mirror in Example Storage Two Bay) was degraded all the time: a disk whose bay is "
      "not known was offline.",
      headline(storyWith({{0, {bad}}}, 8000)));
  EXPECT_EQ(
      "Projects (mirror in Example Storage Two Bay) was degraded from the start until 00:04.000: a "
      "disk whose bay is not known was offline.",
      headline(storyWith({{0, {bad}}, {4000, {wellPicture()}}}, 8000)));
}

TEST(StoryWordsTest, WhatWasNotTheWorstAllAlongSaysSo) {
  Picture offline = degradedPicture(MemberOnline);
  offline.volumes[0].state = VolumeOffline;
  EXPECT_EQ(
      "Projects (mirror in Example Storage Two Bay) has been offline (at worst) since 00:02.000.",
      headline(storyWith(
          {{0, {wellPicture()}}, {2000, {degradedPicture(MemberOnline)}}, {4000, {offline}}},
          6000)));
}

TEST(StoryWordsTest, SeveralDisksOfOneFateAreNamedTogether) {
  const Picture bad = pictureOf(
      {volumeOf("Projects", VolumeOffline,
                {memberIn(1, MemberNotFound, Sight::Remembered), memberIn(2, MemberNotFound)})});
  EXPECT_EQ(
      "Projects (mirror in Example Storage Two Bay) was offline all the time: the disk last seen "
      "in "
      "bay 1 and the disk in bay 2 were missing.",
      headline(storyWith({{0, {bad}}}, 2000)));
}

TEST(StoryWordsTest, AnUnpluggedEnclosureNamesWhatWentWithIt) {
  EXPECT_EQ(
      "Example Storage Two Bay was unplugged at 00:02.000, and with it went Projects (bays 1 and "
      "2); not all of it has come back.",
      headline(storyWith({{0, {wellPicture()}}, {2000, {}}}, 4000)));
  EXPECT_EQ(
      "Example Storage Two Bay was unplugged at 00:02.000, and with it went Projects (bays 1 and "
      "2); all of it was back at 00:04.000.",
      headline(storyWith({{0, {wellPicture()}}, {2000, {}}, {4000, {wellPicture()}}}, 6000)));
}

TEST(StoryWordsTest, WithoutAnIncidentTheHeadlineSaysWhatThereWas) {
  EXPECT_EQ("Nothing went wrong: 1 volume in 1 enclosure, online whenever connected.",
            headline(storyWith({{0, {wellPicture()}}}, 2000)));
  EXPECT_EQ("No RAID volume was found in 1 enclosure.",
            headline(storyWith({{0, {pictureOf({})}}}, 2000)));
  EXPECT_EQ("No enclosure was connected.", headline(storyWith({{0, {}}}, 2000)));
}

TEST(StoryWordsTest, TheOutcomeNamesWhatIsNotOnlineAtTheEnd) {
  EXPECT_EQ("At the end, 00:02.000, 1 volume is online.",
            Program::outcomeOf(storyWith({{0, {wellPicture()}}}, 2000)));
  EXPECT_EQ("At the end, 00:02.000, Projects is degraded.",
            Program::outcomeOf(storyWith({{0, {degradedPicture(MemberFailed)}}}, 2000)));
  EXPECT_EQ("At the end, 00:02.000, no volume is there.",
            Program::outcomeOf(storyWith({{0, {}}}, 2000)));
  EXPECT_EQ("At the end, 00:00.000, no volume is there.", Program::outcomeOf(Story()));
}

TEST(StoryWordsTest, HostileNamesAreMadeHarmless) {
  EXPECT_TRUE(isHarmless(Program::shownName(HostileName)));
  EXPECT_LT(Program::shownName(std::string(100000, 'x')).size(), 200U);
}

TEST(StoryWordsTest, NamesOfOtherThanPlainLettersKeepTheirDirectionToThemselves) {
  EXPECT_EQ("\u2068שלום\u2069", Program::shownName("שלום"));
  EXPECT_EQ("Projects", Program::shownName("Projects"));
}

}  // namespace
}  // namespace ProgramTest
