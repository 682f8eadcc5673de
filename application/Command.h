#pragma once

#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}  // namespace CLI

namespace Program {

class StandardOutput;

// `check` answers with a plugin's statuses instead.
enum ExitStatus : int { Success = 0, Failure = 1, WrongUsage = 2 };

// One command of the program: how it is asked for, and what it does. It keeps what the command line
// says until it runs.
//
// Failure: what can't go on throws: SourceError for a registry, and whatever the standard library
//          throws. A failed write to the output ends a command early; the caller finds it there.
class Command {
 public:
  Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command();

  virtual const char* name() const = 0;
  virtual const char* summary() const = 0;
  virtual const char* details() const = 0;  // the end of its help

  // Options are bound to this object, which outlives the parser's use of them.
  virtual void addOptions(CLI::App& parser) = 0;

  virtual ExitStatus run(StandardOutput& output) = 0;

  // What it says instead of running when it is asked for in a wrong way. The base version explains
  // it on standard error.
  virtual ExitStatus refuse(const std::string& reason, StandardOutput& output) const;
};

// Every command, in the order in which the help names them.
std::vector<std::unique_ptr<Command>> makeCommands();

}  // namespace Program
