#include "application/text/TextList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Charset;
using Program::EnclosureVolumes;
using Program::listText;
using Program::Screen;

TEST(TextList, WithoutEnclosuresSaysSo) {
  EXPECT_EQ("No enclosure is connected.\n", listText(Screen{}, {}));
}

TEST(TextList, TellsAnEnclosureThatIsComingUpFromOneWithoutVolumes) {
  EnclosureVolumes empty{enclosureOf(2), {}};
  EXPECT_EQ("Example Storage Two Bay, 2 bays, 0x0000000000000007\n  No RAID volumes.\n",
            listText(Screen{}, {empty}));
  empty.device.bridge.clear();
  EXPECT_EQ(
      "Example Storage Two Bay, 2 bays, 0x0000000000000007\n"
      "  Coming up: its disks cannot be seen yet.\n",
      listText(Screen{}, {empty}));
}

TEST(TextList, KeepsItsColumnsWhateverTheNames) {
  const std::vector<EnclosureVolumes> enclosures = {
      {enclosureOf(5),
       {volumeNamed("A name that is much too long for its column", VolumeOffline,
                    {{"11111111-A", MemberNotFound, "", -1}, {"22222222-B", MemberStandby, "", 4}}),
        volumeNamed("写真とビデオの保管場所です", VolumeCrossDevice, {}),
        volumeNamed("", VolumeInitializing, {{"33333333-C", MemberUnknown, "", 1}})}}};
  const std::string text = listText(Screen{Charset::Unicode, false, 80}, enclosures);
  expectGolden("list-names.txt", text);
  for (const std::string& line : linesOf(text))
    EXPECT_LE(Program::columnsOf(line), 80) << line;
}

TEST(TextList, ShowsHostileNamesHarmlessly) {
  EnclosureVolumes enclosure{enclosureOf(2), {volumeNamed(HostileName, VolumeOnline, {})}};
  enclosure.device.vendor = HostileName;
  enclosure.device.model = HostileName;
  for (const Charset charset : {Charset::ASCII, Charset::Unicode}) {
    const std::string text = listText(Screen{charset, false, 80}, {enclosure});
    EXPECT_TRUE(isHarmless(text)) << text;
    EXPECT_EQ(3U, linesOf(text).size()) << text;
  }
}

TEST(TextList, ColoursStates) {
  const EnclosureVolumes enclosure{
      enclosureOf(2), {volumeNamed("Projects", VolumeDegraded, {{"M-1", MemberOnline, "", 1}})}};
  const std::string text = listText(Screen{Charset::ASCII, true, 80}, {enclosure});
  EXPECT_THAT(text, testing::HasSubstr("\033[1;31mdegraded\033[0m"));
  EXPECT_THAT(text, testing::HasSubstr("\033[32monline\033[0m"));
}

}  // namespace
}  // namespace ProgramTest
