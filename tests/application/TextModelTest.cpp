#include "application/text/TextModel.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::MemberSnapshot;
using Program::VolumeSnapshot;

TEST(TextModel, TimesHaveHoursOnlyWhenThereAreAny) {
  EXPECT_EQ("00:00.000", Program::clockText(0));
  EXPECT_EQ("00:06.007", Program::clockText(6007));
  EXPECT_EQ("59:59.999", Program::clockText(3599999));
  EXPECT_EQ("1:00:00.000", Program::clockText(3600000));
  EXPECT_EQ("100:00:01.000", Program::clockText(360001000));
}

TEST(TextModel, AnEnclosureIsUnknownUntilItHasSaidWhoMadeIt) {
  Program::DeviceSnapshot device;
  device.uid = 7;
  device.vendor = "invalid";
  device.model = "invalid";
  device.status = -1;
  EXPECT_EQ("unknown enclosure, bays not known, 0x0000000000000007",
            Program::enclosureTitle(device));
  device.vendor = "Example Storage";
  device.model = "Two Bay";
  device.status = 0;
  device.bayCount = 2;
  EXPECT_EQ("Example Storage Two Bay, 2 bays, 0x0000000000000007", Program::enclosureTitle(device));
}

TEST(TextModel, ALongNameTakesNothingFromTheRestOfATitle) {
  Program::DeviceSnapshot device;
  device.uid = 7;
  device.vendor = std::string(200, 'x');
  device.model = "Two Bay";
  const std::string title = Program::enclosureTitle(device);
  EXPECT_EQ(80, Program::columnsOf(title));
  EXPECT_EQ(", bays not known, 0x0000000000000007", title.substr(title.find(',')));
}

TEST(TextModel, AVolumeWithoutANameGoesByItsUUID) {
  VolumeSnapshot volume;
  volume.uuid = "06405B57-06EA";
  EXPECT_EQ("06405B57-06EA", Program::nameOf(volume));
  volume.name = "Projects";
  EXPECT_EQ("Projects", Program::nameOf(volume));
}

TEST(TextModel, AUUIDIsShortenedToItsFirstGroup) {
  EXPECT_EQ("06405B57", Program::shortened("06405B57-06EA-BE3F"));
  EXPECT_EQ("plain", Program::shortened("plain"));
  EXPECT_EQ("", Program::shortened(""));
}

}  // namespace
}  // namespace ProgramTest
