#pragma once

#include <string>

namespace Program {

class StandardOutput;

// Where a watch writes its lines, with a status line below them that is drawn over and over.
//
// Ownership: the output is the caller's. At its end the status line is removed.
// Thread:    the event thread only.
// Failure:   a write that fails ends the event loop; the caller finds it in the output.
class WatchOutput {
 public:
  explicit WatchOutput(StandardOutput& output) : _output(output) {}
  ~WatchOutput();
  WatchOutput(const WatchOutput&) = delete;
  WatchOutput& operator=(const WatchOutput&) = delete;

  void writeLine(const std::string& line);

  // What went wrong beside the watch: a line on standard error.
  void complain(const std::string& line);

  // Replaces the status line; on a terminal only. It has to fit on it: see columns().
  void showStatus(const std::string& text);
  void removeStatus();

  // Of the terminal, now; 0 when there is none.
  int columns() const;

 private:
  void write(const std::string& text);

  StandardOutput& _output;
  bool _statusShown = false;
};

}  // namespace Program
