#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/check/Icinga.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

TEST(Icinga, ReadsStateTextDetailsAndPerformanceData) {
  const IcingaResult result = askIcinga(
      "  vars.raidmonitor_expect = [ \"6B2D61C4-8F0E-4B7A-9C53-0A41D7E2F610\", "
      "\"5E700000-0000-4000-8000-000000000001\" ]\n"
      "  vars.raidmonitor_expect_volumes = 3\n");
  EXPECT_EQ(2, result.state);
  EXPECT_THAT(result.output,
              ElementsAre("CRITICAL - volume 5E700000-0000-4000-8000-000000000001 is missing ",
                          "CRITICAL: volume 5E700000-0000-4000-8000-000000000001 is missing",
                          StartsWith("OK: Archive: mirror online, bay 1 online, bay 2 online; "),
                          StartsWith("OK: Scratch: "), StartsWith("OK: Projects: "),
                          StartsWith("Looked at the built-in demonstration")));
  EXPECT_EQ(
      "enclosures=2;;;0 volumes=3;;3:;0 volumes_online=3;;;0;3 disks=7;;;0 "
      "disks_online=7;;;0;7 Projects=2;;;0;2 Archive=2;;;0;2 Scratch=3;;;0;3",
      result.performanceData);
}

}  // namespace
}  // namespace ProgramTest
