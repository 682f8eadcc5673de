#include "application/report/Strips.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/report/Stories.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Sight;
using Program::Strip;
using testing::ElementsAre;

std::vector<std::string> linesOfStrips(const Frames& frames) {
  std::vector<std::string> lines;
  for (const Strip& strip : Program::stripsOf(storyWith(frames, 10000))) {
    std::string line = strip.label + "|" + strip.detail;
    for (const Strip::Run& run : strip.runs)
      line += " " + std::to_string(run.from) + ":" + run.state;
    lines.push_back(line);
  }
  return lines;
}

TEST(StripsTest, EnclosureVolumeAndMembersEachHaveTheirStates) {
  EXPECT_THAT(
      linesOfStrips({{0, {wellPicture()}},
                     {2000, {degradedPicture(MemberFailed)}},
                     {4000, {degradedPicture(MemberNotFound, Sight::Inferred)}}}),
      ElementsAre("Example Storage Two Bay| 0:connected", "Projects|mirror 0:online 2000:degraded",
                  "Bay 1|MEMBER1 0:online", "Bay 2|MEMBER2 0:online 2000:failed 4000:absent"));
}

TEST(StripsTest, WhatIsNotThereHasNoState) {
  EXPECT_THAT(
      linesOfStrips({{0, {}}, {2000, {wellPicture()}}, {4000, {}}, {6000, {wellPicture()}}}),
      testing::Each(testing::AnyOf(testing::EndsWith(" 2000:online 4000: 6000:online"),
                                   testing::EndsWith(" 2000:connected 4000: 6000:connected"))));
}

TEST(StripsTest, MembersFollowEachOtherByBayAndUnknownOnesComeLast) {
  const auto picture =
      pictureOf({volumeOf("Projects", VolumeOnline,
                          {memberIn(0, MemberOnline, Sight::Nowhere), memberIn(2, MemberOnline),
                           memberIn(1, MemberOnline)})});
  EXPECT_THAT(linesOfStrips({{0, {picture}}}),
              ElementsAre(testing::_, testing::_, "Bay 1|MEMBER1 0:online",
                          "Bay 2|MEMBER2 0:online", "Bay not known|MEMBER0 0:online"));
}

TEST(StripsTest, EnclosuresOfOneNameAreToldApartByTheirUID) {
  EXPECT_THAT(linesOfStrips({{0, {pictureOf({}, 1), pictureOf({}, 2)}}}),
              ElementsAre("Example Storage Two Bay|0x0000000000000001 0:connected",
                          "Example Storage Two Bay|0x0000000000000002 0:connected"));
}

TEST(StripsTest, AnEnclosureThatIsComingUpSaysSo) {
  auto picture = pictureOf({});
  picture.up = false;
  EXPECT_THAT(linesOfStrips({{0, {picture}}, {2000, {wellPicture()}}}),
              testing::Contains("Example Storage Two Bay| 0:coming up 2000:connected"));
}

}  // namespace
}  // namespace ProgramTest
