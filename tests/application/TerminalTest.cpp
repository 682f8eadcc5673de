#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string Escape = "\x1b";

Launch onTerminal() {
  Launch launch;
  launch.output = Launch::Output::Terminal;
  return launch;
}

std::string withoutColour(const std::string& text) {
  return std::regex_replace(text, std::regex("\x1b\\[[0-9;]*m|\r"), "");
}

TEST(Terminal, HasColour) {
  EXPECT_THAT(run({"slots"}, onTerminal()).out, HasSubstr("\x1b[32mdisk online"));
}

TEST(Terminal, ColourIsAllThatItHasMore) {
  for (const char* command : {"watch", "list", "slots"}) {
    const std::string coloured = run({command}, onTerminal()).out;
    EXPECT_EQ(run({command}).out, withoutColour(coloured)) << command;
  }
}

TEST(Terminal, HasNoColourWhenTheEnvironmentSaysSo) {
  Launch launch = onTerminal();
  launch.environment["NO_COLOR"] = "1";
  EXPECT_THAT(run({"slots"}, launch).out, Not(HasSubstr(Escape)));
  launch.environment["NO_COLOR"] = "";  // empty counts as not set
  EXPECT_THAT(run({"slots"}, launch).out, HasSubstr(Escape));
  launch.environment["TERM"] = "dumb";
  EXPECT_THAT(run({"slots"}, launch).out, Not(HasSubstr(Escape)));
}

TEST(Terminal, TheCommandLineHasTheLastWordOnColour) {
  Launch quiet = onTerminal();
  quiet.environment["NO_COLOR"] = "1";
  for (const char* command : {"watch", "list", "slots"}) {
    EXPECT_THAT(run({command, "--color", "never"}, onTerminal()).out, Not(HasSubstr(Escape)));
    EXPECT_THAT(run({command, "--color=always"}).out, HasSubstr(Escape)) << command;
    EXPECT_THAT(run({command, "--color=always"}, quiet).out, HasSubstr(Escape)) << command;
    EXPECT_THAT(run({command, "--color=auto"}, quiet).out, Not(HasSubstr(Escape))) << command;
    EXPECT_EQ(2, run({command, "--color=sometimes"}).status) << command;
  }
}

TEST(Terminal, APipeHasNoColour) {
  for (const char* command : {"watch", "list", "slots"}) {
    EXPECT_THAT(run({command}).out, Not(HasSubstr(Escape))) << command;
  }
}

TEST(Terminal, JSONHasNoColour) {
  for (const char* command : {"watch", "list", "slots"}) {
    EXPECT_THAT(run({command, "--json"}, onTerminal()).out, Not(HasSubstr(Escape))) << command;
  }
}

TEST(Terminal, AWideOneIsUsed) {
  Launch launch = onTerminal();
  launch.columns = 120;
  const std::string wide = withoutColour(run({"watch"}, launch).out);
  EXPECT_GT(linesOf(wide).at(1).size(), linesOf(run({"watch"}).out).at(1).size());
}

}  // namespace
}  // namespace ProgramTest
