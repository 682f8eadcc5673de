#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {

// A terminal that a person could sit at: tmux with a shell in it, in which `raidmonitor` is the
// program. A UTF-8 locale, and no NO_COLOR.
class TmuxTerminal {
 public:
  explicit TmuxTerminal(int columns = 80);
  ~TmuxTerminal();
  TmuxTerminal(const TmuxTerminal&) = delete;
  TmuxTerminal& operator=(const TmuxTerminal&) = delete;

  // Types a line and Enter. The screen is cleared before.
  void type(const std::string& line);
  // A key by tmux's name for it: "C-c".
  void press(const std::string& key);
  void resize(int columns);

  // The lines that are visible, without blanks at their ends and empty ones below them. One that is
  // wider than the terminal is one line.
  std::vector<std::string> screen() const;
  // With the escape sequences for colours.
  std::string colouredScreen() const;

  using Condition = std::function<bool(const std::vector<std::string>&)>;
  // The screen as soon as it is as wanted; the test fails when it does not come to that.
  std::vector<std::string> waitFor(const Condition& wanted) const;
  std::vector<std::string> waitForText(const std::string& text) const;

 private:
  std::string tmux(const std::vector<std::string>& arguments) const;

  TemporaryFolder _folder;
};

}  // namespace ProgramTest
