#pragma once

#include <string>

namespace Program {

struct CommandTable;

// A script that has fish complete the program's command line.
std::string fishCompletion(const CommandTable& table);

}  // namespace Program
