#pragma once

#include <string>
#include <string_view>

namespace Program {

// Standard output, for this program's own lines alone. Whatever else the process prints there, the
// library's one line above all, comes out on standard error instead, line by line: StandardError.h.
//
// Ownership: main's; there is one, made before anything is printed.
// Thread:    one thread.
// Failure:   the first failed write is remembered, everything after it is dropped: ask failed().
class StandardOutput {
 public:
  StandardOutput();
  ~StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

  // In one piece, at once: a reader at the other end of a pipe sees every line when it happens.
  void write(std::string_view text);
  void writeLine(std::string line) { write(line += '\n'); }

  // Nothing can be written afterwards. Some devices only say now that a write has failed.
  void close();

  bool failed() const { return _error != 0; }
  std::string reason() const;

  bool isTerminal() const;
  // Of the terminal; 0 when there is none, or it does not say.
  int columns() const;

 private:
  int _descriptor = -1;
  int _error = 0;  // errno of the first failure
};

}  // namespace Program
