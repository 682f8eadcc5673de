#pragma once

#include <cstdio>
#include <string>

namespace TestSupport {

// Keeps what the process writes to standard output while it lives, down to the descriptor, and puts
// standard output back afterwards.
class CapturedOutput {
 public:
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  // Everything up to now, byte for byte.
  std::string text() const;

  // Puts standard output back now.
  void end();

 private:
  std::FILE* _file;
  int _saved;
};

}  // namespace TestSupport
