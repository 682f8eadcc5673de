#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(CommandLine, HelpIsThereForTheProgramAndEachCommand) {
  const struct {
    Arguments arguments;
    const char* usage;
  } rows[] = {{{"--help"}, "Usage: raidmonitor [OPTIONS] COMMAND\n"},
              {{"watch", "--help"}, "Usage: raidmonitor watch [OPTIONS]\n"},
              {{"list", "--help"}, "Usage: raidmonitor list [OPTIONS]\n"},
              {{"slots", "--help"}, "Usage: raidmonitor slots [OPTIONS]\n"},
              {{"report", "--help"}, "Usage: raidmonitor report [OPTIONS]\n"},
              {{"record", "--help"}, "Usage: raidmonitor record [OPTIONS] DIR\n"},
              {{"check", "--help"}, "Usage: raidmonitor check [OPTIONS]\n"},
              {{"metrics", "--help"}, "Usage: raidmonitor metrics [OPTIONS]\n"},
              {{"completions", "--help"}, "Usage: raidmonitor completions [OPTIONS] SHELL\n"}};
  for (const auto& row : rows) {
    const Result result = run(row.arguments);
    EXPECT_EQ(0, result.status) << row.usage;
    EXPECT_THAT(result.out, HasSubstr(row.usage));
    EXPECT_EQ("", result.err) << row.usage;
    for (const std::string& line : linesOf(result.out))
      EXPECT_LE(line.size(), 80U) << line;
  }
}

TEST(CommandLine, TheHelpNamesEveryOption) {
  const std::string help = run({"watch", "--help"}).out;
  for (const char* option : {"--help", "--version", "--registry PATH", "--json", "--log",
                             "--until MS", "--pace", "--handles", "--color WHEN", "--ascii",
                             "--exec PROGRAM", "--exec-arg TEXT", "--test-event"}) {
    EXPECT_THAT(help, HasSubstr(option));
  }
}

TEST(CommandLine, TheVersionIsThereForTheProgramAndEachCommand) {
  for (const Arguments& arguments : {Arguments{"--version"},
                                     {"watch", "--version"},
                                     {"list", "--version"},
                                     {"slots", "--version"}}) {
    const Result result = run(arguments);
    EXPECT_EQ(0, result.status) << arguments.front();
    EXPECT_EQ("raidmonitor " RAIDMONITOR_VERSION_EXPECTED "\n", result.out) << arguments.front();
    EXPECT_EQ("", result.err) << arguments.front();
  }
}

TEST(CommandLine, WrongUsageIsExplainedOnStandardErrorWithStatusTwo) {
  const struct {
    Arguments arguments;
    const char* reason;
  } rows[] = {
      {{}, "raidmonitor: a command is missing\nTry 'raidmonitor --help'.\n"},
      {{"--json"}, "raidmonitor: a command is missing\n"},
      {{"look"}, "raidmonitor: 'look' is no command\n"},
      {{"lo\nok\x1b[31m"}, "raidmonitor: 'lo\uFFFDok\uFFFD[31m' is no command\n"},
      {{"watch", "list"}, "raidmonitor: "},
      {{"watch", "--frobnicate"}, "raidmonitor: "},
      {{"watch", "--registry"}, "raidmonitor: --registry: "},
      {{"watch", "--registry", "a", "--registry", "b"}, "raidmonitor: --registry: "},
      {{"watch", "--until"}, "raidmonitor: --until: "},
      {{"watch", "--until", "soon"}, "raidmonitor: --until: 'soon' is not a number of millisec"},
      {{"watch", "--until", "-1"}, "raidmonitor: --until: '-1' is not a number of milliseconds\n"},
      {{"watch", "--until", "1.5"}, "raidmonitor: --until: '1.5' is not a number of millisecon"},
      {{"watch", "--until", "0x10"}, "raidmonitor: --until: '0x10' is not a number of millisec"},
      {{"watch", "--until", "9223372036854775808"}, "raidmonitor: --until: 922337203685477580"},
      {{"report", "--output", ""}, "raidmonitor: --output: the name is empty\n"},
      {{"metrics", "--output", ""}, "raidmonitor: --output: the name is empty\n"},
      {{"watch", "--metrics", ""}, "raidmonitor: --metrics: the name is empty\n"},
      {{"watch", "--config", ""}, "raidmonitor: --config: the name is empty\n"},
      {{"record", ""}, "raidmonitor: DIR: the name is empty\n"},
      {{"list", "--handles"}, "raidmonitor: "},
      {{"slots", "--pace"}, "raidmonitor: "},
  };
  for (const auto& row : rows) {
    const Result result = run(row.arguments);
    EXPECT_EQ(2, result.status) << row.reason;
    EXPECT_EQ("", result.out) << row.reason;
    EXPECT_THAT(result.err, StartsWith(row.reason));
    EXPECT_EQ(2U, linesOf(result.err).size()) << result.err;
  }
}

TEST(CommandLine, ANumberMayHaveLeadingZeros) {
  const Result result = run({"watch", "--json", "--handles", "--until", "0004000"});
  EXPECT_THAT(linesOf(result.out).back(), StartsWith(R"({"time": 4000, "event": "handles")"));
}

}  // namespace
}  // namespace ProgramTest
