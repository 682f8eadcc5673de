#include "tests/application/terminal/TmuxTerminal.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

constexpr std::chrono::seconds Patience{60};
constexpr int LookPeriod = 20;  // milliseconds

std::string quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

bool contains(const std::vector<std::string>& screen, const std::string& text) {
  for (const std::string& line : screen) {
    if (line.find(text) != std::string::npos) return true;
  }
  return false;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  return text;
}

}  // namespace

TmuxTerminal::TmuxTerminal(int columns) {
  const std::string program = std::filesystem::path(RAIDMONITOR_PROGRAM).parent_path().string();
  tmux({"new-session", "-d", "-x", std::to_string(columns), "-y", "24",
        "env -u NO_COLOR LC_ALL=C.UTF-8 PS1='$ ' PATH=" + quoted(program) +
            ":\"$PATH\" bash --norc --noprofile"});
  waitForText("$");
}

TmuxTerminal::~TmuxTerminal() { tmux({"kill-server"}); }

std::string TmuxTerminal::tmux(const std::vector<std::string>& arguments) const {
  std::string command = "env -u TMUX LC_ALL=C.UTF-8 " RAIDMONITOR_TMUX " -u -f /dev/null -S " +
                        quoted(_folder.file("tmux"));
  for (const std::string& argument : arguments)
    command += " " + quoted(argument);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "re"), pclose);
  if (!pipe) throw std::runtime_error("tmux cannot be started");
  std::string output;
  char buffer[4096];
  while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe.get()))
    output.append(buffer, count);
  return output;
}

void TmuxTerminal::type(const std::string& line) {
  tmux({"send-keys", "clear", "Enter"});
  waitFor([](const auto& screen) { return screen.size() == 1 && screen[0] == "$"; });
  tmux({"send-keys", "-l", line});
  press("Enter");
}

void TmuxTerminal::press(const std::string& key) { tmux({"send-keys", key}); }

void TmuxTerminal::resize(int columns) {
  tmux({"resize-window", "-x", std::to_string(columns), "-y", "24"});
}

std::vector<std::string> TmuxTerminal::screen() const {
  std::vector<std::string> lines = linesOf(tmux({"capture-pane", "-p", "-J"}));
  for (std::string& line : lines)
    line.erase(line.find_last_not_of(' ') + 1);
  while (!lines.empty() && lines.back().empty())
    lines.pop_back();
  return lines;
}

std::string TmuxTerminal::colouredScreen() const { return tmux({"capture-pane", "-p", "-e"}); }

std::vector<std::string> TmuxTerminal::waitFor(const Condition& wanted) const {
  const auto end = std::chrono::steady_clock::now() + Patience;
  std::vector<std::string> lines = screen();
  while (!wanted(lines)) {
    if (std::chrono::steady_clock::now() > end) {
      ADD_FAILURE() << "not what was wanted:\n" << joined(lines);
      break;
    }
    poll(nullptr, 0, LookPeriod);
    lines = screen();
  }
  return lines;
}

std::vector<std::string> TmuxTerminal::waitForText(const std::string& text) const {
  return waitFor([&text](const auto& lines) { return contains(lines, text); });
}

}  // namespace ProgramTest
