#pragma once

namespace Program {

// As long as it lives, what the process prints on its standard output besides the program's own
// lines is dropped: the library's one line above all. With ErrorsToo standard error is dropped as
// well: some runners of plugins, Icinga's among them, take its first line for the plugin's.
//
// Thread: one thread; one at a time.
class Silence {
 public:
  enum class Streams { Output, ErrorsToo };

  explicit Silence(Streams streams);
  ~Silence();
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int _output = -1;  // what they were; -1: left alone
  int _errors = -1;
};

}  // namespace Program
