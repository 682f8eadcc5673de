#include "tests/application/completions/Shells.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

const std::string Drivers = RAIDMONITOR_SOURCES "/tests/application/completions/";

std::string script(const std::string& shell) {
  const Result result = run({"completions", shell});
  EXPECT_EQ(0, result.status) << result.err;
  return result.out;
}

std::string joined(const std::vector<std::string>& words) {
  std::string line = "raidmonitor";
  for (const std::string& word : words)
    line += " " + word;
  return line;
}

ToolCommand commandFor(Shell shell, const std::vector<std::string>& words,
                       const TemporaryFolder& folder) {
  if (shell == Shell::Fish) {
    const std::string file = folder.write("raidmonitor.fish", script("fish"));
    return {"fish", "--no-config", "-c",
            "source " + file + "; complete -C '" + joined(words) + "'"};
  }
  if (shell == Shell::Zsh) {
    folder.write("_raidmonitor", script("zsh"));
    return {"zsh", "-f", Drivers + "complete.zsh", folder.path(), joined(words)};
  }
  const std::string file = folder.write("raidmonitor.bash", script("bash"));
  const std::string plain = shell == Shell::PlainBash ? "yes" : "";
  ToolCommand command = {"env",    "WITHOUT_BASH_COMPLETION=" + plain, "bash",
                         "--norc", Drivers + "complete.bash",          file};
  command.insert(command.end(), words.begin(), words.end());
  return command;
}

// fish tells what things are behind a tabulator.
std::string withoutDescription(const std::string& line) { return line.substr(0, line.find('\t')); }

}  // namespace

std::string nameOf(Shell shell) {
  switch (shell) {
    case Shell::Bash:
      return "Bash";
    case Shell::PlainBash:
      return "PlainBash";
    case Shell::Zsh:
      return "Zsh";
    case Shell::Fish:
      break;
  }
  return "Fish";
}

std::vector<std::string> offeredBy(Shell shell, const std::vector<std::string>& words) {
  const TemporaryFolder folder;
  const Result result = runTool(commandFor(shell, words, folder));
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ("", result.err);
  std::vector<std::string> offered;
  for (const std::string& line : linesOf(result.out))
    offered.push_back(withoutDescription(line));
  // What a shell finds twice, it shows once.
  std::sort(offered.begin(), offered.end());
  offered.erase(std::unique(offered.begin(), offered.end()), offered.end());
  return offered;
}

std::string sourcedBy(std::vector<std::string> command, const std::string& shell) {
  const TemporaryFolder folder;
  command.push_back(folder.write("script", script(shell)));
  const Result result = runTool(command);
  EXPECT_EQ("", result.err);
  return result.out;
}

std::vector<std::string> namesOf(const std::vector<std::string>& paths) {
  std::vector<std::string> names;
  for (std::string path : paths) {
    path.erase(std::remove(path.begin(), path.end(), '\\'), path.end());
    if (path.back() == '/') path.pop_back();
    names.push_back(std::filesystem::path(path).filename().string());
  }
  return names;
}

std::vector<std::string> commandsOfTheHelp() {
  const std::vector<std::string> lines = linesOf(run({"--help"}).out);
  std::vector<std::string> commands;
  const auto first = std::find(lines.begin(), lines.end(), "Commands:");
  for (auto line = first; line != lines.end() && !line->empty(); ++line) {
    if (line->front() == ' ') commands.push_back(line->substr(2, line->find(' ', 2) - 2));
  }
  return commands;
}

std::vector<std::string> optionsOfTheHelp(std::vector<std::string> command) {
  command.push_back("--help");
  const std::regex option("^  (--[a-z-]+)");
  std::vector<std::string> options;
  for (const std::string& line : linesOf(run(command).out)) {
    std::smatch match;
    if (std::regex_search(line, match, option)) options.push_back(match[1]);
  }
  return options;
}

}  // namespace ProgramTest
