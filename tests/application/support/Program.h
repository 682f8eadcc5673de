#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ProgramTest {

using Arguments = std::vector<std::string>;

// How the program is started.
struct Launch {
  enum class Output { Pipe, Terminal, Closed, File };

  Output output = Output::Pipe;
  std::string file;               // for Output::File
  int columns = 80;               // for a terminal
  bool errorsOnTerminal = false;  // instead of a pipe
  // Changes to the test's own environment; none: the variable is taken out.
  std::map<std::string, std::optional<std::string>> environment;
};

struct Result {
  int status = -1;  // the exit status, or minus the signal that ended it
  std::string out;  // what came through a pipe or a terminal
  std::string err;
};

// The real program, running. A UTF-8 locale, no NO_COLOR and TERM "xterm", unless the launch says
// otherwise.
class RunningProgram {
 public:
  explicit RunningProgram(const Arguments& arguments, const Launch& launch = {});
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  // Waits until so much has been printed.
  void waitForLines(std::size_t count);
  // Waits until that has been printed on standard error.
  void waitForError(const std::string& text);
  // The same, but false when it has ended without.
  bool printsError(const std::string& text);
  void send(int signal) const;
  void closeOutput();
  // False when it is still running after so many milliseconds.
  bool waitForExit(int milliseconds);
  Result finish();

 private:
  bool readSome();

  pid_t _process = -1;
  int _out = -1;
  int _err = -1;
  Result _result;
};

Result run(const Arguments& arguments, const Launch& launch = {});

// A recording, or anything else, that is kept with the tests.
std::string recording(const std::string& name);
std::string contentOf(const std::string& file);

// The lines of a text, without their ends.
std::vector<std::string> linesOf(const std::string& text);

// Compares with the text kept in golden/, which says how to write it anew when they differ.
void expectGolden(const std::string& name, const std::string& text);

}  // namespace ProgramTest
