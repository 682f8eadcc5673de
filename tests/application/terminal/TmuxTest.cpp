#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwchar>

#include "tests/application/support/Program.h"
#include "tests/application/support/RenamedRecording.h"
#include "tests/application/terminal/TmuxTerminal.h"

namespace ProgramTest {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string StatusText = "last look";

// The library's own lines are not what is looked at.
std::string quietly(const std::string& command) { return command + " 2>/dev/null; echo status=$?"; }

bool shows(const std::vector<std::string>& screen, const std::string& text) {
  return std::any_of(screen.begin(), screen.end(), [&text](const std::string& line) {
    return line.find(text) != std::string::npos;
  });
}

TEST(Tmux, HasColourUnlessTheEnvironmentOrTheUserSaysNo) {
  TmuxTerminal terminal;
  const std::string green = "\x1b[32m";
  terminal.type(quietly("raidmonitor slots"));
  terminal.waitForText("status=0");
  EXPECT_THAT(terminal.colouredScreen(), HasSubstr(green));
  terminal.type(quietly("NO_COLOR=1 raidmonitor slots"));
  terminal.waitForText("status=0");
  EXPECT_THAT(terminal.colouredScreen(), Not(HasSubstr("\x1b[")));
  terminal.type(quietly("raidmonitor slots --color never"));
  terminal.waitForText("status=0");
  EXPECT_THAT(terminal.colouredScreen(), Not(HasSubstr("\x1b[")));
  terminal.type(quietly("NO_COLOR=1 raidmonitor slots --color=always | cat"));
  terminal.waitForText("status=0");
  EXPECT_THAT(terminal.colouredScreen(), HasSubstr(green));
}

TEST(Tmux, DrawsBoxesThatAreWhole) {
  TmuxTerminal terminal;
  terminal.type(quietly("raidmonitor slots"));
  EXPECT_THAT(terminal.waitForText("status=0"),
              Contains(StartsWith("  ┌──────────────┬──────────────┬──────────────┬")));
}

TEST(Tmux, DrawsBoxesThatAreWholeInANarrowTerminal) {
  TmuxTerminal terminal(40);
  terminal.type("clear; " + quietly("raidmonitor slots"));
  const auto screen = terminal.waitForText("status=0");
  EXPECT_THAT(screen, Contains("  └──────────────┴──────────────┘"));
  EXPECT_THAT(screen, Each(Not(HasSubstr("┬──────────────┬"))));
}

TEST(Tmux, DrawsInASCIIWhereTheLocaleIsNotUTF8OrTheUserSaysSo) {
  TmuxTerminal terminal;
  for (const char* command : {"LC_ALL=C raidmonitor slots", "raidmonitor slots --ascii"}) {
    terminal.type(quietly(command));
    const auto screen = terminal.waitForText("status=0");
    EXPECT_THAT(screen, Contains(StartsWith("  +--------------+--------------+")));
    EXPECT_THAT(screen, Each(Not(HasSubstr("─"))));
  }
}

TEST(Tmux, AStatusLineStandsAtTheBottomAndGoesAtTheEnd) {
  TmuxTerminal terminal;
  terminal.type(quietly("raidmonitor watch --pace --until 3000"));
  const auto screen = terminal.waitForText("1 enclosure");
  EXPECT_THAT(screen.back(), HasSubstr(StatusText)) << "nothing is below it";
  const auto after = terminal.waitForText("status=0");
  EXPECT_THAT(after, Each(Not(HasSubstr(StatusText))));
  EXPECT_THAT(after, Contains(HasSubstr("new  Archive     mirror online")));
}

TEST(Tmux, TheStatusLineFollowsTheWidthOfTheTerminal) {
  TmuxTerminal terminal;
  terminal.type(quietly("raidmonitor watch --pace --until 600000"));
  terminal.waitForText(StatusText);
  terminal.resize(40);
  const auto narrow = terminal.waitFor([](const auto& screen) {
    return !screen.empty() && screen.back().find("…") != std::string::npos;
  });
  EXPECT_THAT(narrow.back(), StartsWith("2 volumes, online · 1 enclosure"));
  EXPECT_EQ(1, std::count_if(narrow.begin(), narrow.end(),
                             [](const std::string& line) {
                               return line.find(" volumes, ") != std::string::npos;
                             }))
      << "the old one is still there";
  terminal.resize(100);
  const auto wide = terminal.waitFor([](const auto& screen) {
    return !screen.empty() && screen.back().find(StatusText) != std::string::npos;
  });
  EXPECT_THAT(wide.back(), StartsWith("2 volumes, online · 1 enclosure · last look 00:0"));
  terminal.press("C-c");
  terminal.waitForText("status=0");
}

TEST(Tmux, AnInterruptEndsAWatchInOrder) {
  TmuxTerminal terminal;
  terminal.type(quietly("raidmonitor watch --pace --handles --until 600000"));
  terminal.waitForText(StatusText);
  terminal.press("C-c");
  const auto screen = terminal.waitForText("status=0");
  EXPECT_THAT(screen, Contains(HasSubstr("status=0")));
  EXPECT_THAT(screen, Contains(HasSubstr("held entries")));
  EXPECT_THAT(screen, Each(Not(HasSubstr(StatusText))));
}

TEST(Tmux, APipeThatIsClosedEarlyIsNoTrouble) {
  TmuxTerminal terminal;
  terminal.type(
      "raidmonitor watch --log --until 9223372036854775807 2>/dev/null | head -1; "
      "echo status=${PIPESTATUS[*]}");
  const auto screen = terminal.waitForText("status=1");
  EXPECT_THAT(screen, Contains(HasSubstr("status=141 0")));  // 128 + SIGPIPE, as usual
  EXPECT_TRUE(shows(screen, "00:00.000 "));
}

TEST(Tmux, WhatIsPipedHasNeitherColourNorAStatusLine) {
  TmuxTerminal terminal;
  terminal.type(quietly("raidmonitor watch --pace --until 100 | cat -v"));
  const auto screen = terminal.waitForText("status=0");
  EXPECT_THAT(screen, Each(AllOf(Not(HasSubstr("^[")), Not(HasSubstr("^M")))));
  EXPECT_THAT(screen, Contains(HasSubstr("mirror online")));
}

// By the C library's opinion, which is not the program's own.
int columnsOf(const std::string& line) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  std::wstring wide(line.size(), L'\0');
  const std::size_t count = std::mbstowcs(wide.data(), line.c_str(), wide.size());
  return count == std::string::npos ? -1 : wcswidth(wide.c_str(), count);
}

// What the command prints on a screen of 80 columns.
void expectToFit(TmuxTerminal& terminal, const std::string& command) {
  terminal.type(quietly(command));
  auto screen = terminal.waitForText("status=0");
  ASSERT_LT(3U, screen.size()) << command;
  screen.erase(screen.begin());  // what was typed
  for (const std::string& line : screen) {
    EXPECT_LE(columnsOf(line), 80) << command << "\n" << line;
    EXPECT_LE(0, columnsOf(line)) << command << "\n" << line;
  }
}

TEST(Tmux, ListFitsTheScreen) {
  TmuxTerminal terminal;
  terminal.type(quietly("raidmonitor list"));
  const auto screen = terminal.waitForText("status=0");
  EXPECT_THAT(screen, Contains(StartsWith("  VOLUME               LEVEL   STATE        BAY DISK")));
  for (const char* name :
       {"five-bay-five-disks", "five-bay-bridges", "odd-members", "cross-device-marks",
        "two-bay-both-missing", "spanning-set-leaves-through-the-other"}) {
    expectToFit(terminal, "raidmonitor list --registry " + recording(name));
    expectToFit(terminal, "raidmonitor slots --registry " + recording(name));
  }
}

TEST(Tmux, ListFitsTheScreenWhateverTheNames) {
  std::string wide;
  std::string lengthy;
  std::string combined;
  for (int i = 0; i < 100; ++i) {
    wide += "\u5199\u771f";
    lengthy += "a name and ";
    combined += "e\u0301\u0308";
  }
  TmuxTerminal terminal;
  for (const std::string& name :
       {wide, lengthy, combined, std::string(500, 'W'), std::string("\u202eevil\u2028")}) {
    const TemporaryFolder folder;
    const std::string registry = degradedVolumeNamed(folder, name);
    for (const char* form : {"list", "list --ascii", "slots", "slots --ascii"})
      expectToFit(terminal, std::string("raidmonitor ") + form + " --registry " + registry);
  }
}

}  // namespace
}  // namespace ProgramTest
