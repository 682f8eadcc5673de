#include "application/text/TextSlots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Charset;
using Program::EnclosureSlots;
using Program::Screen;
using Program::slotsText;
using testing::HasSubstr;
using testing::Not;

const Screen plain{Charset::Unicode, false, 80};

// Two members, the one in bay 2 placed by inference; a disk in each bay that is listed.
EnclosureSlots inferred(const std::vector<int>& disks) {
  EnclosureSlots enclosure;
  enclosure.device = enclosureOf(2);
  enclosure.volumes = {volumeNamed("Projects", VolumeDegraded,
                                   {{"11111111-A", MemberOnline, "", std::nullopt},
                                    {"22222222-B", MemberNotFound, "", std::nullopt}})};
  enclosure.locations = {{1, 1}, {-1, 2}};
  enclosure.answers.fill(-1);
  for (const int disk : disks)
    enclosure.answers[static_cast<std::size_t>(disk - 1)] = disk;
  return enclosure;
}

TEST(TextSlots, WithoutEnclosuresSaysSo) {
  EXPECT_EQ("No enclosure is connected.\n", slotsText(plain, {}));
}

TEST(TextSlots, MarkAMemberThatWasPlacedByInference) {
  expectGolden("slots-inferred.txt", slotsText(plain, {inferred({1})}));
}

TEST(TextSlots, NameTheDisksInTroubleBelowTheBays) {
  EnclosureSlots enclosure = inferred({1});
  enclosure.locations = {{1, 1}, {2, 2}};
  for (const auto& [state, word] : std::map<MemberState, std::string>{
           {MemberFailed, "failed"}, {MemberOffline, "offline"}, {MemberNotFound, "absent"}}) {
    enclosure.volumes[0].members[1].state = state;
    const std::string text = slotsText(plain, {enclosure});
    EXPECT_THAT(text, HasSubstr("│ Bay 1        │ Bay 2 !      │\n"));
    EXPECT_THAT(text, HasSubstr("┘\n  ! Bay 2: disk " + word +
                                " 22222222 of Projects (mirror degraded)\n"));
  }
  for (const MemberState state : {MemberOnline, MemberStandby, MemberUnknown}) {
    enclosure.volumes[0].members[1].state = state;
    EXPECT_THAT(slotsText(plain, {enclosure}), Not(HasSubstr("!")));
  }
}

TEST(TextSlots, ShowAnotherDiskInTheBayOfTheOneThatIsAbsent) {
  EXPECT_THAT(slotsText(plain, {inferred({1})}), Not(HasSubstr("+ other disk")));
  expectGolden("slots-other-disk.txt", slotsText(plain, {inferred({1, 2})}));
}

TEST(TextSlots, TellDisksOutsideOfVolumesFromEmptyBays) {
  EnclosureSlots enclosure;
  enclosure.device = enclosureOf(5);
  enclosure.answers = {3, 3, 3, 3, 5, 3};
  expectGolden("slots-without-volumes.txt", slotsText(plain, {enclosure}));
}

TEST(TextSlots, ListMembersThatNoBayShows) {
  EnclosureSlots enclosure = inferred({1});
  enclosure.volumes[0].members.push_back({"33333333-C", MemberOnline, "", std::nullopt});
  enclosure.volumes[0].members.push_back({"44444444-D", MemberFailed, "", std::nullopt});
  enclosure.volumes[0].members.push_back({"55555555-E", MemberFailed, "", std::nullopt});
  enclosure.locations.insert(enclosure.locations.end(), {{6, 6}, {1, 1}, {0, 0}});
  const std::string text = slotsText(plain, {enclosure});
  EXPECT_THAT(text, HasSubstr("  Bay 6: disk online 33333333 of Projects (mirror degraded)\n"));
  EXPECT_THAT(text, HasSubstr("  Bay 1: disk failed 44444444 of Projects (mirror degraded)\n"))
      << "the second in one bay";
  EXPECT_THAT(text, HasSubstr("  Bay not known: disk failed 55555555 of Projects"));
}

TEST(TextSlots, DrawNoBaysForAModelThatIsNotKnown) {
  EnclosureSlots enclosure = inferred({});
  enclosure.device.bayCount = 0;
  enclosure.locations = {{-1, -1}, {-1, -1}};
  EXPECT_EQ(
      "Example Storage Five Bay, bays not known, 0x0000000000000007\n"
      "  Bay not known: disk online 11111111 of Projects (mirror degraded)\n"
      "  Bay not known: disk absent 22222222 of Projects (mirror degraded)\n",
      [&enclosure] {
        enclosure.device.model = "Five Bay";
        return slotsText(plain, {enclosure});
      }());
}

TEST(TextSlots, DrawNoBaysForAnEnclosureThatIsComingUp) {
  EnclosureSlots enclosure;
  enclosure.device = enclosureOf(2);
  enclosure.device.bridge.clear();
  EXPECT_EQ(
      "Example Storage Two Bay, 2 bays, 0x0000000000000007\n"
      "  Coming up: its disks cannot be seen yet.\n",
      slotsText(plain, {enclosure}));
}

TEST(TextSlots, ShowHostileAndLongNamesWithinTheirBoxes) {
  EnclosureSlots enclosure = inferred({1});
  for (const std::string& name : {HostileName, std::string("写真とビデオの保管場所です")}) {
    enclosure.volumes[0].name = name;
    for (const Charset charset : {Charset::ASCII, Charset::Unicode}) {
      const std::vector<std::string> lines =
          linesOf(slotsText(Screen{charset, false, 80}, {enclosure}));
      ASSERT_EQ(12U, lines.size());
      for (std::size_t line = 1; line < 10; ++line) {
        EXPECT_EQ(33, Program::columnsOf(lines[line])) << lines[line];
        EXPECT_TRUE(isHarmless(lines[line])) << lines[line];
      }
    }
  }
}

TEST(TextSlots, DrawAsManyBaysSideBySideAsFit) {
  EnclosureSlots enclosure;
  enclosure.device = enclosureOf(5);
  enclosure.answers.fill(-1);
  for (const auto& [columns, widest] : std::map<int, int>{{78, 78}, {77, 63}, {40, 33}, {10, 18}}) {
    Screen screen = plain;
    screen.drawingColumns = columns;
    const std::vector<std::string> lines = linesOf(slotsText(screen, {enclosure}));
    EXPECT_EQ(widest, Program::columnsOf(lines.at(1))) << columns;
    EXPECT_THAT(lines, testing::Contains(HasSubstr("│ Bay 5")));
  }
}

TEST(TextSlots, AreInColourWhereThatIsAllowed) {
  const std::string text = slotsText(Screen{Charset::ASCII, true, 80}, {inferred({1})});
  EXPECT_THAT(text, HasSubstr("\033[1;31mdisk absent \033[0m"));
  EXPECT_THAT(text, HasSubstr("\033[32mdisk online \033[0m"));
}

}  // namespace
}  // namespace ProgramTest
