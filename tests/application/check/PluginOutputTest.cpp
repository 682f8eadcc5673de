#include "application/check/PluginOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/application/support/Program.h"
#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace Program;
using namespace RAIDMonitoring;
using testing::StartsWith;

std::vector<EnclosureVolumes> with(const VolumeSnapshot& volume) {
  return {{enclosureOf(2), {volume}}};
}

std::string outputFor(const std::vector<EnclosureVolumes>& enclosures) {
  return pluginOutput(assess(enclosures, {}, {}), enclosures, {}, "a place");
}

TEST(PluginOutput, HasTheExitStatusesOfPlugins) {
  EXPECT_EQ(0, pluginStatusOf(Severity::Ok));
  EXPECT_EQ(1, pluginStatusOf(Severity::Warning));
  EXPECT_EQ(2, pluginStatusOf(Severity::Critical));
  EXPECT_EQ(3, pluginStatusOf(Severity::Unknown));
}

TEST(PluginOutput, SaysHowManyOtherThingsAreWrong) {
  const VolumeSnapshot volume = volumeNamed("A", VolumeFailed, {});
  EXPECT_THAT(outputFor({{enclosureOf(2), {volume, volume, volume}}}),
              StartsWith("CRITICAL - A: mirror failed (Example Storage Two Bay "
                         "0x0000000000000007) (and 2 more) | enclosures=1;;;0 "));
}

TEST(PluginOutput, ANameCannotAddLinesOrPerformanceData) {
  VolumeSnapshot volume = volumeNamed(HostileName, VolumeFailed, {});
  volume.name += "|\r\n|";
  const std::string output = outputFor(with(volume));
  EXPECT_TRUE(isHarmless(output)) << output;
  EXPECT_EQ(1, std::count(output.begin(), output.end(), '|')) << output;
  EXPECT_EQ(3U, linesOf(output).size()) << output;
}

TEST(PluginOutput, AReasonIsOneLine) {
  EXPECT_EQ("UNKNOWN - a\uFFFDb \u00a6 c\n", pluginFailure("a\nb | c"));
}

}  // namespace
}  // namespace ProgramTest
