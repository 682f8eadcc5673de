#include "tests/application/check/Nagios.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/RenamedRecording.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr const char* Negate = "/usr/lib/nagios/plugins/negate";

TEST(Nagios, ReadsStateTextDetailsAndPerformanceData) {
  const auto statuses = askNagios({{"Fine", "--until 2000"},
                                   {"Rebuilding", "--until 14000"},
                                   {"Broken", "--until 8000"},
                                   {"Unreadable", "--registry /nowhere"},
                                   {"Misused", "--nonsense"}});
  EXPECT_EQ(0, statuses.at("Fine").state);
  EXPECT_EQ("OK - 2 volumes online", statuses.at("Fine").output);
  EXPECT_EQ(1, statuses.at("Rebuilding").state);
  EXPECT_EQ(3, statuses.at("Unreadable").state);
  EXPECT_EQ("UNKNOWN - /nowhere: cannot be read: No such file or directory",
            statuses.at("Unreadable").output);
  EXPECT_EQ(3, statuses.at("Misused").state);

  const NagiosStatus& broken = statuses.at("Broken");
  EXPECT_EQ(2, broken.state);
  EXPECT_EQ(
      "CRITICAL - Projects: mirror degraded, disk failed in bay 2 "
      "(Example Storage Two Bay 0x00030f1b7461e0a5)",
      broken.output);
  EXPECT_THAT(broken.longOutput,
              StartsWith("CRITICAL: Projects: mirror degraded, bay 1 online, bay 2 failed; "));
  EXPECT_THAT(broken.longOutput, HasSubstr("\\nOK: Archive: mirror online, "));
  EXPECT_EQ(
      "enclosures=2;;;0 volumes=3;;;0 volumes_online=2;;;0;3 disks=7;;;0 "
      "disks_online=6;;;0;7 'Projects'=1;;;0;2 'Archive'=2;;;0;2 'Scratch'=3;;;0;3",
      broken.performanceData);
}

TEST(Nagios, FindsItsPartsWhateverIsInAName) {
  const TemporaryFolder folder;
  const std::string archive =
      degradedVolumeNamed(folder, "O'Neill | load=1\n2nd line &lt;b&gt; \"Großes\" C:\\n\u202e");
  const NagiosStatus status = askNagios({{"Odd", "--registry " + archive}}).at("Odd");
  EXPECT_EQ(2, status.state);
  EXPECT_EQ(
      "CRITICAL - O'Neill \u00a6 load=1\uFFFD2nd line <b> \"Großes\" C:\\n\uFFFD: mirror "
      "degraded, disk missing from bay 2 (Example Storage Two Bay 0x00030f1b7461e0a5)",
      status.output);
  EXPECT_EQ(
      "enclosures=1;;;0 volumes=1;;;0 volumes_online=0;;;0;1 disks=2;;;0 "
      "disks_online=1;;;0;2 'O_Neill _ load_1\uFFFD2nd line <b> \"Großes\" C:\\n\uFFFD'=1;;;0;2",
      status.performanceData);
  EXPECT_THAT(status.longOutput, MatchesRegex("CRITICAL: O'Neill [^|]*\\\\nLooked at [^|]*"));
}

// A runner of plugins from another hand: it takes the status, and the text word by word.
TEST(PluginRunner, TakesTheStatusForWhatItIs) {
  const auto negated = [](const std::string& to, Arguments arguments) {
    ToolCommand command = {
        Negate, "-s", "-o", to, "-w", to, "-c", to, "-u", to, RAIDMONITOR_PROGRAM, "check"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runTool(command);
  };
  const Result critical = negated("WARNING", {"--until", "8000"});
  EXPECT_EQ(1, critical.status);
  EXPECT_THAT(critical.out, StartsWith("WARNING - Projects: mirror degraded, disk failed"));
  const Result fine = negated("CRITICAL", {"--until", "2000"});
  EXPECT_EQ(2, fine.status);
  EXPECT_THAT(fine.out, StartsWith("CRITICAL - 2 volumes online | "));
  const Result unknown = negated("OK", {"--registry", "/nowhere"});
  EXPECT_EQ(0, unknown.status);
  EXPECT_THAT(unknown.out, StartsWith("OK - /nowhere: "));
}

}  // namespace
}  // namespace ProgramTest
