#include "application/text/TextWatchPrinter.h"

#include <gtest/gtest.h>

#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Charset;
using Program::Screen;
using Program::TextWatchPrinter;
using VolumeEvent = Program::WatchPrinter::VolumeEvent;

const Screen plain{Charset::Unicode, false, 80};

Program::VolumeSnapshot projects() {
  return volumeNamed("Projects", VolumeDegraded,
                     {{"A", MemberOnline, "", 1}, {"B", MemberNotFound, "", 2}});
}

TEST(TextWatchPrinter, Devices) {
  TextWatchPrinter printer(plain);
  EXPECT_EQ("00:00.100 new  enclosure 0x0000000000000007", printer.deviceAppeared(100, 7));
  EXPECT_EQ("01:00.100 gone enclosure 0x0000000000000007", printer.deviceDisappeared(60100, 7));
}

TEST(TextWatchPrinter, Volumes) {
  TextWatchPrinter printer(plain);
  const auto enclosure = enclosureOf(2);
  EXPECT_EQ("00:06.000 new  Projects    mirror degraded 1 2:absent   Example Storage Two Bay",
            printer.volumeChanged(6000, VolumeEvent::Appeared, projects(), enclosure));
  EXPECT_EQ("00:06.000 now  Projects    mirror degraded 1 2:absent   Example Storage Two Bay",
            printer.volumeChanged(6000, VolumeEvent::Updated, projects(), enclosure));
}

TEST(TextWatchPrinter, AVolumeThatIsGoneHasTheBaysThatItHadLast) {
  TextWatchPrinter printer(plain);
  const auto enclosure = enclosureOf(2);
  printer.volumeChanged(6000, VolumeEvent::Appeared, projects(), enclosure);
  auto gone = projects();
  for (auto& member : gone.members)
    member.slot.reset();
  EXPECT_EQ("00:08.000 gone Projects    mirror degraded 1 2:absent   Example Storage Two Bay",
            printer.volumeChanged(8000, VolumeEvent::Disappeared, gone, enclosure));
}

TEST(TextWatchPrinter, LongNamesTakeFromTheEndOfTheLine) {
  TextWatchPrinter printer(plain);
  auto volume = projects();
  volume.name = "Everything that we ever filmed";
  const std::string line = printer.volumeChanged(0, VolumeEvent::Appeared, volume, enclosureOf(2));
  EXPECT_EQ("00:00.000 new  Everything that w… mirror degraded 1 2:absent Example Storage Tw…",
            line);
}

TEST(TextWatchPrinter, AWiderScreenShowsMoreOfLongNames) {
  TextWatchPrinter printer({Charset::Unicode, false, 132});
  auto volume = projects();
  volume.name = "Everything that we ever filmed";
  const std::string line = printer.volumeChanged(0, VolumeEvent::Appeared, volume, enclosureOf(2));
  EXPECT_EQ(
      "00:00.000 new  Everything that we ever filmed      mirror degraded 1 2:absent   "
      "Example Storage Two Bay",
      line);
}

TEST(TextWatchPrinter, HostileTextIsHarmless) {
  TextWatchPrinter printer(plain);
  auto volume = projects();
  volume.name = HostileName;
  auto enclosure = enclosureOf(2);
  enclosure.vendor = HostileName;
  for (const std::string& line :
       {printer.volumeChanged(0, VolumeEvent::Appeared, volume, enclosure),
        printer.logged(0, {Pelago::Logger::Level::Message, HostileName, HostileName})}) {
    EXPECT_TRUE(isHarmless(line)) << line;
    EXPECT_EQ(std::string::npos, line.find('\n'));
  }
}

TEST(TextWatchPrinter, LogLinesAreNotClipped) {
  TextWatchPrinter printer(plain);
  const std::string text(200, 'x');
  EXPECT_EQ("00:00.000 log  debug: Category: " + text,
            printer.logged(0, {Pelago::Logger::Level::Debug, "Category", text}));
}

TEST(TextWatchPrinter, HandlesAreSummedUp) {
  TextWatchPrinter printer(plain);
  Program::HandleAccounts accounts;
  accounts.kept = {{1, 128}, {2, 9}};
  EXPECT_EQ("00:14.000 held entries 2, references 137, objects 0, values 0",
            printer.handles(14000, accounts));
}

}  // namespace
}  // namespace ProgramTest
