#include "application/Words.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::wordFor;

TEST(Words, OfLevels) {
  const struct {
    RAIDLevel level;
    const char* word;
  } rows[] = {{LevelStripe, "stripe"},
              {LevelMirror, "mirror"},
              {LevelConcat, "concat"},
              {LevelUnknown, "unknown"}};
  for (const auto& row : rows)
    EXPECT_STREQ(row.word, wordFor(row.level)) << row.level;
}

TEST(Words, OfVolumeStates) {
  const struct {
    RAIDVolumeState state;
    const char* word;
  } rows[] = {{VolumeCrossDevice, "cross-device"},
              {VolumeUnknown, "unknown"},
              {VolumeFailed, "failed"},
              {VolumeTerminating, "terminating"},
              {VolumeInitializing, "initializing"},
              {VolumeOnline, "online"},
              {VolumeDegraded, "degraded"},
              {VolumeOffline, "offline"}};
  for (const auto& row : rows)
    EXPECT_STREQ(row.word, wordFor(row.state)) << row.state;
}

TEST(Words, OfMemberStates) {
  const struct {
    MemberState state;
    const char* word;
  } rows[] = {{MemberNotFound, "not-found"}, {MemberUnknown, "unknown"}, {MemberOffline, "offline"},
              {MemberStandby, "standby"},    {MemberOnline, "online"},   {MemberFailed, "failed"}};
  for (const auto& row : rows)
    EXPECT_STREQ(row.word, wordFor(row.state)) << row.state;
}

TEST(Words, IdentifiersHaveSixteenDigitsInLowerCase) {
  EXPECT_EQ("0x0000000000000000", Program::hexadecimal(0));
  EXPECT_EQ("0x00030f1b7461e0a5", Program::hexadecimal(0x00030F1B7461E0A5));
  EXPECT_EQ("0xffffffffffffffff", Program::hexadecimal(~0ULL));
}

}  // namespace
}  // namespace ProgramTest
