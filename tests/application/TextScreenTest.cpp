#include "application/text/TextScreen.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using Program::Charset;
using Program::lineOf;
using Program::Screen;
using Program::Tone;

const Screen plain{Charset::Unicode, false, 20};

TEST(TextScreen, CellsStandInTheirColumns) {
  EXPECT_EQ("a    bc   d", lineOf(plain, {{"a", 4}, {"bc", 4}, {"d"}}));
}

TEST(TextScreen, ALineEndsWithoutBlanks) { EXPECT_EQ("a", lineOf(plain, {{"a", 4}, {"", 4}})); }

TEST(TextScreen, ALongTextTakesFromTheBlanksOfTheCellsAfterIt) {
  EXPECT_EQ("abcdef x  d", lineOf(plain, {{"abcdef", 4}, {"x", 4}, {"d"}}));
  EXPECT_EQ("abcdef wxyz d", lineOf(plain, {{"abcdef", 4}, {"wxyz", 4}, {"d"}}));
}

TEST(TextScreen, ALineIsClippedToTheScreen) {
  EXPECT_EQ("aaaaaaaaaa bbbbbbbb…", lineOf(plain, {{"aaaaaaaaaa", 4}, {"bbbbbbbbbbbb"}, {"c"}}));
}

TEST(TextScreen, PaintingLeavesColumnsAsTheyAre) {
  const Screen colour{Charset::Unicode, true, 20};
  EXPECT_EQ("\033[32ma\033[0m    \033[1mbc\033[0m",
            lineOf(colour, {{"a", 4, Tone::Good}, {"bc", 4, Tone::Strong}}));
  EXPECT_EQ("a", painted(plain, Tone::Bad, "a"));
  EXPECT_EQ("a", painted(colour, Tone::Plain, "a"));
  EXPECT_EQ("", painted(colour, Tone::Bad, ""));
}

TEST(TextScreen, TonesOfStates) {
  using namespace RAIDMonitoring;
  for (const auto state : {VolumeFailed, VolumeOffline, VolumeDegraded}) {
    EXPECT_EQ(Tone::Bad, Program::toneOf(state)) << state;
  }
  for (const auto state :
       {VolumeCrossDevice, VolumeUnknown, VolumeTerminating, VolumeInitializing}) {
    EXPECT_EQ(Tone::Uneasy, Program::toneOf(state)) << state;
  }
  EXPECT_EQ(Tone::Good, Program::toneOf(VolumeOnline));
  for (const auto state : {MemberNotFound, MemberFailed, MemberOffline}) {
    EXPECT_EQ(Tone::Bad, Program::toneOf(state)) << state;
  }
  for (const auto state : {MemberUnknown, MemberStandby}) {
    EXPECT_EQ(Tone::Uneasy, Program::toneOf(state)) << state;
  }
  EXPECT_EQ(Tone::Good, Program::toneOf(MemberOnline));
}

}  // namespace
}  // namespace ProgramTest
