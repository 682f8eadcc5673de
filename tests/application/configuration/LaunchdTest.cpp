#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string PropertyList =
    RAIDMONITOR_SOURCES "/packaging/launchd/org.example.raidmonitor.plist";

// What Python's expression says of the property list `job`, a line each.
std::vector<std::string> told(const std::string& expression) {
  const std::string program =
      "import plistlib, sys\njob = plistlib.load(open(sys.argv[1], 'rb'))\n" + expression + "\n";
  const Result result = runTool({"python3", "-c", program, PropertyList});
  EXPECT_EQ("", result.err);
  return linesOf(result.out);
}

TEST(Launchd, ThePropertyListReadsTheSameEverywhere) {
  const TemporaryFolder folder;
  const std::string binary = folder.file("binary.plist");
  const Result result = runTool({"plistutil", "-f", "bin", "-i", PropertyList, "-o", binary});
  ASSERT_EQ(0, result.status) << result.err;
  const std::string compare =
      "import plistlib, sys\n"
      "a, b = (plistlib.load(open(name, 'rb')) for name in sys.argv[1:])\n"
      "print(a == b and len(a) > 5)\n";
  EXPECT_EQ("True\n", runTool({"python3", "-c", compare, PropertyList, binary}).out);
}

TEST(Launchd, TheJobIsKeptRunningButNotStartedAgainAtOnce) {
  EXPECT_THAT(told("print(job['KeepAlive'], job['RunAtLoad'], job['ThrottleInterval'] >= 10)"),
              ElementsAre("True True True"));
  EXPECT_THAT(told("print(job['Label'])"), ElementsAre("org.example.raidmonitor"));
}

// launchd sends SIGTERM, and SIGKILL so many seconds later: a program of --exec may take twelve.
TEST(Launchd, TheJobHasTheTimeToEndInOrder) {
  EXPECT_THAT(told("print(job['ExitTimeOut'] > 12)"), ElementsAre("True"));
}

TEST(Launchd, TheProgramTakesTheJobsArguments) {
  Arguments arguments = told("print(*job['ProgramArguments'], sep='\\n')");
  ASSERT_EQ(4U, arguments.size());
  EXPECT_EQ("/usr/local/bin/raidmonitor", arguments[0]);
  EXPECT_EQ("/usr/local/etc/raidmonitor.toml", arguments[3]);
  arguments.erase(arguments.begin());
  arguments.back() = RAIDMONITOR_SOURCES "/packaging/raidmonitor.toml";
  const TemporaryFolder folder;
  arguments.insert(arguments.end(), {"--metrics", folder.file("raid.prom")});
  const Result result = run(arguments);
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_THAT(result.out, HasSubstr("raid-appeared"));
}

}  // namespace
}  // namespace ProgramTest
