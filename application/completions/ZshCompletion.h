#pragma once

#include <string>

namespace Program {

struct CommandTable;

// A script that has zsh complete the program's command line.
std::string zshCompletion(const CommandTable& table);

}  // namespace Program
