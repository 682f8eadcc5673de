#include "application/text/TextStatus.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <ctime>

#include "platform/pelago/VirtualClock.h"
#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Charset;
using Program::Overview;
using Program::Screen;
using Program::statusText;
using Program::TextClock;

const Screen plain{Charset::Unicode, false, 80};

Overview overview() {
  Overview overview;
  overview.enclosures = {enclosureOf(2), enclosureOf(5)};
  overview.volumes = {{VolumeOnline, 2}, {VolumeDegraded, 1}};
  overview.lastLook = 8000;
  return overview;
}

// Local time is that of a fixed zone, until the end.
class InUTCPlusOne {
 public:
  InUTCPlusOne() {
    setenv("TZ", "TST-1", 1);
    tzset();
  }
  ~InUTCPlusOne() {
    unsetenv("TZ");
    tzset();
  }
};

// 2026-11-21 11:03:04 UTC and as much later as the moment is.
TextClock wallClock() {
  return TextClock([](Pelago::Milliseconds moment) { return 1795258984 + moment / 1000; });
}

TEST(TextStatus, CountsVolumesAndEnclosures) {
  EXPECT_EQ("3 volumes, 1 degraded · 2 enclosures · last look 00:08.000",
            statusText(plain, overview(), TextClock(), 80));
  Overview one = overview();
  one.enclosures.pop_back();
  one.volumes = {{VolumeOnline, 1}};
  EXPECT_EQ("1 volume, online · 1 enclosure · last look 00:08.000",
            statusText(plain, one, TextClock(), 80));
  EXPECT_EQ("no volumes · 0 enclosures · last look 00:00.000",
            statusText(plain, Overview(), TextClock(), 80));
}

TEST(TextStatus, StaysBelowTheWidthOfTheTerminal) {
  EXPECT_EQ("3 volumes, 1 degraded · 2 enclosures · …",
            statusText(plain, overview(), TextClock(), 41));
  EXPECT_EQ("…", statusText(plain, overview(), TextClock(), 2));
}

TEST(TextStatus, IsASCIIWhereTheScreenIs) {
  EXPECT_EQ("3 volumes, 1 degraded - 2 enclosures - last look 00:08.000",
            statusText(Screen{}, overview(), TextClock(), 80));
}

TEST(TextStatus, IsInTheColourOfTheWorst) {
  const Screen coloured{Charset::Unicode, true, 80};
  EXPECT_EQ(0U, statusText(coloured, overview(), TextClock(), 80)
                    .find("\033[1;31m3 volumes, 1 degraded\033[0m"));
}

TEST(TextClock, TellsTheTimeOfARecordingOrOfTheWall) {
  const InUTCPlusOne zone;
  EXPECT_EQ("00:08.000", TextClock().text(8000));
  EXPECT_EQ("00:08.000", TextClock().timeOfDay(8000));
  EXPECT_EQ("2026-11-21 12:03:12", wallClock().text(8000));
  EXPECT_EQ("12:03:12", wallClock().timeOfDay(8000));
}

TEST(TextClock, OnTheWallCountsBackFromNow) {
  const InUTCPlusOne zone;
  Pelago::VirtualClock clock;
  clock.waitUntil(3600000);
  const auto hourAgo = [] { return std::time(nullptr) - 3600; };
  const auto textOf = [](std::time_t time) {
    return TextClock([time](Pelago::Milliseconds) { return time; }).text(0);
  };
  const std::string earliest = textOf(hourAgo());
  const std::string text = TextClock::onTheWall(clock).text(0);
  EXPECT_LE(earliest, text);
  EXPECT_GE(textOf(hourAgo()), text);
}

}  // namespace
}  // namespace ProgramTest
