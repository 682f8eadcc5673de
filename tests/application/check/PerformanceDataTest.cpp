#include "application/check/PerformanceData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace Program;
using namespace RAIDMonitoring;
using testing::HasSubstr;

VolumeSnapshot volume(const std::string& uuid, const std::string& name,
                      RAIDVolumeState state = VolumeOnline) {
  MemberSnapshot online;
  online.state = MemberOnline;
  MemberSnapshot failed;
  failed.state = MemberFailed;
  VolumeSnapshot made = volumeNamed(name, state, {online, failed});
  made.uuid = uuid;
  return made;
}

std::string dataOf(std::vector<VolumeSnapshot> volumes) {
  return performanceData({{enclosureOf(2), std::move(volumes)}}, {});
}

TEST(PerformanceData, CountsAndGoesVolumeByVolume) {
  EXPECT_EQ(
      "enclosures=1;;;0 volumes=2;;;0 volumes_online=1;;;0;2 disks=4;;;0 "
      "disks_online=2;;;0;4 'A'=1;;;0;2 'B'=1;;;0;2",
      dataOf({volume("1", "A"), volume("2", "B", VolumeDegraded)}));
}

TEST(PerformanceData, HasTheExpectedNumberAsTheCriticalRange) {
  Expectations expected;
  expected.volumes = 3;
  EXPECT_THAT(performanceData({}, expected), HasSubstr(" volumes=0;;3:;0 "));
}

TEST(PerformanceData, TwoVolumesOfOneNameAreToldApart) {
  EXPECT_THAT(dataOf({volume("U1", "Data"), volume("U2", "Data")}),
              HasSubstr(" 'Data U1'=1;;;0;2 'Data U2'=1;;;0;2"));
}

TEST(PerformanceData, NoLabelComesTwiceWhateverTheNames) {
  const std::string longName(100, 'x');
  EXPECT_THAT(dataOf({volume("1", longName + "1"), volume("2", longName + "2")}),
              HasSubstr("xx…'=1;;;0;2 '2 xx"));
  EXPECT_THAT(dataOf({volume("1", "a=b"), volume("2", "a'b")}),
              HasSubstr(" 'a_b'=1;;;0;2 '2 a_b'=1;;;0;2"));
}

TEST(PerformanceData, ALabelHoldsNothingThatEndsIt) {
  EXPECT_EQ("'O_Neill _ x_1\uFFFDé'", performanceLabel("O'Neill | x=1\né"));
  EXPECT_EQ("'\uFFFD'", performanceLabel("\xff"));
}

TEST(PerformanceData, ASetThatTwoEnclosuresReportIsOneAndAsGoodAsTheWorseReport) {
  const std::string data =
      performanceData({{enclosureOf(2), {volume("1", "A")}},
                       {enclosureOf(5), {volume("1", "A", VolumeCrossDevice)}}},
                      {});
  EXPECT_THAT(data, HasSubstr("volumes=1;;;0 volumes_online=0;;;0;1 disks=2;;;0 "));
}

}  // namespace
}  // namespace ProgramTest
