#pragma once

#include <string>
#include <vector>

namespace ProgramTest {

// Bash also without bash-completion, as macOS has it.
enum class Shell { Bash, PlainBash, Zsh, Fish };

std::string nameOf(Shell shell);

// What a real shell offers for the last of the words behind "raidmonitor", in order.
std::vector<std::string> offeredBy(Shell shell, const std::vector<std::string>& words);

// What a shell's command says when its $0 is the script for it.
std::string sourcedBy(std::vector<std::string> command, const std::string& shell);

// The last parts of paths, without backslashes: fish escapes what it offers.
std::vector<std::string> namesOf(const std::vector<std::string>& paths);

// What the program's own help names; `command` is empty for the program itself.
std::vector<std::string> commandsOfTheHelp();
std::vector<std::string> optionsOfTheHelp(std::vector<std::string> command);

}  // namespace ProgramTest
