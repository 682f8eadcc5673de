#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "model/MemberState.h"
#include "model/RAIDLevel.h"
#include "model/RAIDVolumeState.h"

// The numbers and texts of states and levels. That the registry's texts arrive in the objects is
// tested with the objects.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;

template <class Value>
struct Row {
  const char* text;
  Value value;
  int number;
};

constexpr Row<RAIDVolumeState> VolumeStates[] = {{"Failed", VolumeFailed, 0},
                                                 {"Terminating", VolumeTerminating, 1},
                                                 {"Initializing", VolumeInitializing, 2},
                                                 {"Online", VolumeOnline, 3},
                                                 {"Degraded", VolumeDegraded, 4},
                                                 {"Offline", VolumeOffline, 5}};
constexpr Row<RAIDLevel> Levels[] = {
    {"Stripe", LevelStripe, 0}, {"Mirror", LevelMirror, 1}, {"Concat", LevelConcat, 2}};
constexpr Row<MemberState> MemberStates[] = {{"Offline", MemberOffline, 0},
                                             {"Standby", MemberStandby, 1},
                                             {"Online", MemberOnline, 2},
                                             {"Failed", MemberFailed, 3}};

template <class Value, std::size_t Count>
void expectTable(const Row<Value> (&rows)[Count], void (*read)(const std::string&, Value&)) {
  for (const auto& row : rows) {
    auto value = static_cast<Value>(-7);
    read(row.text, value);
    EXPECT_EQ(row.value, value) << row.text;
    EXPECT_EQ(row.number, static_cast<int>(value)) << row.text;
  }
}

// Texts that come close to those of the table, and yet are none of them.
template <class Value, std::size_t Count>
void expectNearMissesLeaveTheValue(const Row<Value> (&rows)[Count],
                                   void (*read)(const std::string&, Value&)) {
  for (const auto& row : rows) {
    const std::string text = row.text;
    std::string lower = text;
    lower[0] = static_cast<char>(lower[0] - 'A' + 'a');
    for (const std::string& miss :
         {lower, text + " ", " " + text, text + text, text.substr(0, text.size() - 1),
          text.substr(1), text + std::string(1, '\0'), std::string()}) {
      auto value = static_cast<Value>(-7);
      read(miss, value);
      EXPECT_EQ(-7, static_cast<int>(value)) << '"' << miss << '"';
    }
  }
}

TEST(RAIDVolumeState, EachStatusTextHasItsNumber) { expectTable(VolumeStates, readVolumeState); }

TEST(RAIDVolumeState, AnyOtherTextLeavesTheStateAlone) {
  expectNearMissesLeaveTheValue(VolumeStates, readVolumeState);
}

TEST(RAIDVolumeState, TheStatesWithoutATextHaveTheirNumbers) {
  EXPECT_EQ(-2, static_cast<int>(VolumeCrossDevice));
  EXPECT_EQ(-1, static_cast<int>(VolumeUnknown));
}

TEST(RAIDLevel, EachLevelTextHasItsNumber) { expectTable(Levels, readRAIDLevel); }

TEST(RAIDLevel, AnyOtherTextLeavesTheLevelAlone) {
  expectNearMissesLeaveTheValue(Levels, readRAIDLevel);
}

TEST(RAIDLevel, TheLevelThatWasNeverReadHasItsNumber) {
  EXPECT_EQ(-1, static_cast<int>(LevelUnknown));
}

TEST(MemberState, EachStatusTextHasItsNumber) { expectTable(MemberStates, readMemberState); }

TEST(MemberState, AnyOtherTextLeavesTheStateAlone) {
  expectNearMissesLeaveTheValue(MemberStates, readMemberState);
}

TEST(MemberState, TheStatesWithoutATextHaveTheirNumbers) {
  EXPECT_EQ(-2, static_cast<int>(MemberNotFound));
  EXPECT_EQ(-1, static_cast<int>(MemberUnknown));
}

TEST(Vocabulary, AllNumbersAreSigned32Bit) {
  EXPECT_TRUE((std::is_same_v<std::int32_t, std::underlying_type_t<RAIDVolumeState>>));
  EXPECT_TRUE((std::is_same_v<std::int32_t, std::underlying_type_t<RAIDLevel>>));
  EXPECT_TRUE((std::is_same_v<std::int32_t, std::underlying_type_t<MemberState>>));
}

}  // namespace
}  // namespace ModelTest
