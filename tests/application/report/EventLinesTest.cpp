#include "application/report/EventLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/report/Stories.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::EventLine;
using Program::Picture;
using Program::Sight;
using Program::Story;
using testing::ElementsAre;
using Happening = Program::Story::Happening;

std::vector<std::string> textsOf(const Frames& frames, std::vector<Story::Event> events) {
  Story story = storyWith(frames, 10000);
  story.events = std::move(events);
  std::vector<std::string> texts;
  for (const EventLine& line : Program::eventLinesOf(story))
    texts.push_back(std::to_string(line.time) + " " + line.text);
  return texts;
}

Story::Event told(Story::Moment time, Happening what, const Picture& picture) {
  return volumeEvent(time, what, picture.volumes.at(0));
}

TEST(EventLinesTest, WhatIsReportedTwiceIsOneLineThatSaysWhatHasChanged) {
  const Picture well = wellPicture();
  const Picture bad = degradedPicture(MemberFailed);
  EXPECT_THAT(textsOf({{0, {well}}, {2000, {bad}}}, {deviceEvent(0, Happening::DeviceAppeared),
                                                     told(0, Happening::VolumeAppeared, well),
                                                     told(2000, Happening::VolumeUpdated, bad),
                                                     told(2000, Happening::VolumeUpdated, bad)}),
              ElementsAre("0 Enclosure is connected", "0 Projects: mirror online, bays 1 and 2",
                          "2000 Projects: mirror degraded, was online; bay 2: disk failed"));
}

TEST(EventLinesTest, TheSameReportAtAnotherTimeIsAnotherLine) {
  const Picture bad = degradedPicture(MemberFailed);
  EXPECT_EQ(2U, textsOf({{0, {bad}}}, {told(0, Happening::VolumeUpdated, bad),
                                       told(2000, Happening::VolumeUpdated, bad)})
                    .size());
}

TEST(EventLinesTest, ADiskThatIsNotSeenAnyMoreHasTheBayInWhichItWas) {
  const Picture bad = degradedPicture(MemberNotFound, Sight::Remembered);
  EXPECT_THAT(
      textsOf({{0, {wellPicture()}}, {2000, {bad}}}, {told(2000, Happening::VolumeUpdated, bad)}),
      ElementsAre("2000 Projects: mirror degraded; bay 2, was: disk absent"));
}

TEST(EventLinesTest, AnEnclosureThatGoesIsOneLineWithItsVolumes) {
  const Picture well = wellPicture();
  EXPECT_THAT(textsOf({{0, {well}}, {2000, {}}}, {deviceEvent(2000, Happening::DeviceDisappeared),
                                                  told(2000, Happening::VolumeDisappeared, well)}),
              ElementsAre("2000 Enclosure was unplugged; with it went Projects (bays 1 and 2)"));
}

TEST(EventLinesTest, AVolumeThatGoesAloneIsALineOfItsOwn) {
  const Picture well = wellPicture();
  EXPECT_THAT(textsOf({{0, {well}}, {2000, {pictureOf({})}}},
                      {told(2000, Happening::VolumeDisappeared, well)}),
              ElementsAre("2000 Projects (bays 1 and 2) is gone"));
}

TEST(EventLinesTest, DisksThatGoAndComeAreSeenAmongTheOthersInTheOrderOfTime) {
  Picture pulled = degradedPicture(MemberFailed, Sight::Inferred);
  pulled.disks = {true, false};
  EXPECT_THAT(textsOf({{0, {degradedPicture(MemberFailed)}},
                       {2500, {pulled}},
                       {3500, {degradedPicture(MemberStandby)}}},
                      {told(3000, Happening::VolumeUpdated, pulled)}),
              ElementsAre("2500 Bay 2: its disk is gone", testing::StartsWith("3000 "),
                          "3500 Bay 2: there is a disk now"));
}

TEST(EventLinesTest, WhatIsSeenOfSeveralBaysIsOneLineBeforeWhatIsReportedOfIt) {
  Picture gone = wellPicture();
  gone.disks = {false, false};
  EXPECT_THAT(textsOf({{0, {wellPicture()}}, {2000, {gone}}},
                      {told(2000, Happening::VolumeDisappeared, gone)}),
              ElementsAre("2000 Bays 1 and 2: their disks are gone",
                          "2000 Projects (bays 1 and 2) is gone"));
}

}  // namespace
}  // namespace ProgramTest
