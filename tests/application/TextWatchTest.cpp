#include "application/text/TextWatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/StandardOutput.h"
#include "application/watch/WatchOutput.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/Snapshots.h"
#include "tests/support/CapturedOutput.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Charset;
using Program::DeviceEvent;
using Program::Screen;
using Program::VolumeEvent;
using testing::ElementsAre;
using Kind = VolumeEvent::Kind;

const Screen plain{Charset::Unicode, false, 80};

VolumeEvent projects(Kind kind, RAIDVolumeState state = VolumeDegraded) {
  return {
      kind,
      volumeNamed("Projects", state, {{"A-1", MemberOnline, "", 1}, {"B-2", MemberFailed, "", 2}}),
      enclosureOf(2)};
}

VolumeEvent gone(VolumeEvent event) {
  event.kind = Kind::Disappeared;
  for (auto& member : event.volume.members)
    member.slot.reset();
  return event;
}

class TextWatchTest : public testing::Test {
 protected:
  // One moment after the other, with what happens at it.
  std::vector<std::string> linesOfMoments(
      const std::vector<std::vector<Program::WatchEvent>>& moments,
      const std::vector<Program::DeviceSnapshot>& connected, const Screen& screen = plain,
      const Program::TextClock& clock = {}) {
    TestSupport::CapturedOutput captured;
    {
      Program::StandardOutput output;
      Program::WatchOutput lines(output);
      Program::TextWatch watch(screen, clock, lines, Program::TextWatch::Status::Shown);
      Program::Overview overview;
      overview.enclosures = connected;
      for (const auto& moment : moments) {
        for (const Program::WatchEvent& event : moment)
          watch.heard(event);
        watch.instantEnded(overview);
      }
    }
    return linesOf(captured.text());
  }
};

TEST_F(TextWatchTest, Enclosures) {
  EXPECT_THAT(linesOfMoments({{{100, DeviceEvent{DeviceEvent::Kind::Appeared, 7}},
                               {100, DeviceEvent{DeviceEvent::Kind::Appeared, 8}}},
                              {{60100, DeviceEvent{DeviceEvent::Kind::Disappeared, 7}}}},
                             {enclosureOf(2, 7)}),
              ElementsAre("00:00.100 new  Example Storage Two Bay 0x0000000000000007",
                          "00:00.100 new  enclosure 0x0000000000000008",
                          "01:00.100 gone Example Storage Two Bay 0x0000000000000007"));
}

TEST_F(TextWatchTest, Volumes) {
  EXPECT_THAT(
      linesOfMoments({{{6000, projects(Kind::Appeared)}},
                      {{8000, projects(Kind::Updated)}},
                      {{9000, gone(projects(Kind::Updated))}}},
                     {enclosureOf(2)}),
      ElementsAre("00:06.000 new  Projects    mirror degraded bay 2: failed; bay 1: online in "
                  "Example Storage Two Bay",
                  "00:08.000 now  Projects    mirror degraded bay 2: failed; bay 1: online in "
                  "Example Storage Two Bay",
                  "00:09.000 gone Projects    mirror degraded bay 2, was: failed; bay 1, was: "
                  "online in Example Storage Two Bay"));
}

TEST_F(TextWatchTest, AnEnclosureThatIsUnpluggedIsOneLineWithItsVolumesAndTheirBays) {
  VolumeEvent other = projects(Kind::Appeared, VolumeOnline);
  other.volume.uuid = other.volume.name = "Archive";
  other.volume.members = {{"C-3", MemberOnline, "", 3}, {"D-4", MemberOnline, "", 4}};
  const auto lines = linesOfMoments({{{0, projects(Kind::Appeared)}, {0, other}},
                                     {{500, DeviceEvent{DeviceEvent::Kind::Disappeared, 7}},
                                      {500, gone(projects(Kind::Updated))},
                                      {500, gone(other)}}},
                                    {enclosureOf(2)});
  ASSERT_EQ(3U, lines.size());
  EXPECT_EQ(
      "00:00.500 gone Example Storage Two Bay 0x0000000000000007, with Projects (mirror degraded; "
      "bay 2: failed; bay 1: online), Archive (mirror online; bays 3 4)",
      lines[2]);
}

TEST_F(TextWatchTest, TheBaysOfAnotherEnclosureAreNotThoseThatWent) {
  VolumeEvent spanning = projects(Kind::Appeared, VolumeOnline);
  spanning.enclosure = enclosureOf(5, 8);
  const auto lines = linesOfMoments(
      {{{0, spanning}},
       {{500, DeviceEvent{DeviceEvent::Kind::Disappeared, 7}}, {500, gone(spanning)}}},
      {enclosureOf(2, 7), enclosureOf(5, 8)});
  EXPECT_EQ(
      "00:00.500 gone Example Storage Two Bay 0x0000000000000007, with Projects (mirror online; "
      "bays not known)",
      lines.at(1));
}

TEST_F(TextWatchTest, EnclosuresOfOneNameAreToldApartByTheirUIDs) {
  const auto lines =
      linesOfMoments({{{0, projects(Kind::Appeared)}}}, {enclosureOf(2, 7), enclosureOf(2, 8)});
  EXPECT_THAT(lines.at(0), testing::EndsWith("in Example Storage Two Bay 0x0000000000000007"));
}

TEST_F(TextWatchTest, AChangeThatIsReportedTwiceIsOneLine) {
  EXPECT_EQ(1U, linesOfMoments({{{0, projects(Kind::Updated)}, {0, projects(Kind::Updated)}}},
                               {enclosureOf(2)})
                    .size());
}

TEST_F(TextWatchTest, ALongNamePushesTheRestOfTheLine) {
  VolumeEvent event = projects(Kind::Appeared, VolumeOnline);
  event.volume.name = "Everything that we ever filmed";
  EXPECT_EQ(
      "00:00.000 new  Everything that we ever filmed mirror online bay 2: failed; bay 1: "
      "online in Example Storage Two Bay",
      linesOfMoments({{{0, event}}}, {enclosureOf(2)}).at(0));
}

TEST_F(TextWatchTest, NothingIsCutOffButVeryLongNames) {
  VolumeEvent event = projects(Kind::Appeared);
  event.volume.name = std::string(5000, 'x');
  const auto lines = linesOfMoments({{{0, event}}}, {enclosureOf(2)});
  EXPECT_THAT(lines.at(0), testing::HasSubstr("x… mirror degraded bay 2: failed; bay 1: online"));
  EXPECT_LT(lines[0].size(), 200U);
}

TEST_F(TextWatchTest, HostileTextIsHarmless) {
  VolumeEvent event = projects(Kind::Appeared);
  event.volume.name = HostileName;
  event.volume.members[0].uuid = HostileName;
  event.volume.members[0].slot = -1;
  event.enclosure.vendor = HostileName;
  for (const Charset charset : {Charset::ASCII, Charset::Unicode}) {
    const auto lines = linesOfMoments(
        {{{0, event},
          {0, Program::LogEvent{Pelago::Logger::Level::Message, HostileName, HostileName}}},
         {{1, DeviceEvent{DeviceEvent::Kind::Disappeared, 7}}, {1, gone(event)}}},
        {event.enclosure}, {charset, false, 80});
    ASSERT_EQ(3U, lines.size());
    for (const std::string& line : lines)
      EXPECT_TRUE(isHarmless(line)) << line;
  }
}

TEST_F(TextWatchTest, LogLinesAreNotClipped) {
  const std::string text(200, 'x');
  EXPECT_THAT(linesOfMoments(
                  {{{0, Program::LogEvent{Pelago::Logger::Level::Debug, "Category", text}}}}, {}),
              ElementsAre("00:00.000 log  debug: Category: " + text));
}

TEST_F(TextWatchTest, HandlesAreSummedUpAndLostEventsCounted) {
  Program::HandleAccounts accounts;
  accounts.kept = {{1, 128}, {2, 9}};
  EXPECT_THAT(linesOfMoments({{{14000, Program::DroppedEvent{1}},
                               {14000, Program::DroppedEvent{7}},
                               {14000, Program::HandlesEvent{accounts}}}},
                             {}),
              ElementsAre("00:14.000 lost 1 event for the program, which is too slow",
                          "00:14.000 lost 7 events for the program, which is too slow",
                          "00:14.000 held entries 2, references 137, objects 0, values 0"));
}

TEST_F(TextWatchTest, ThereIsNoStatusLineInAPipe) {
  EXPECT_THAT(linesOfMoments({{}, {}}, {enclosureOf(2)}), testing::IsEmpty());
}

TEST_F(TextWatchTest, TellsTheTimeOnTheWallWhereItIsLive) {
  const Program::TextClock noon(
      [](Pelago::Milliseconds moment) { return std::time_t{1795258984} + moment / 1000; });
  EXPECT_THAT(
      linesOfMoments({{{0, DeviceEvent{DeviceEvent::Kind::Appeared, 7}}}}, {}, plain, noon).at(0),
      testing::MatchesRegex("2026-11-2[012] ..:03:04 new  enclosure 0x0000000000000007"));
}

}  // namespace
}  // namespace ProgramTest
