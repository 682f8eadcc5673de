#pragma once

#include <string>

namespace Program {

struct CommandTable;

// A script that has bash complete the program's command line.
std::string bashCompletion(const CommandTable& table);

}  // namespace Program
