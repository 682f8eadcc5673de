#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Program {

// A recording that can't be written: one line that names what could not be, and the reason.
class RecordingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The folder that a recording is written into.
//
// Failure: RecordingError. Nothing that was written before is touched.
class RecordingFolder {
 public:
  // Makes the folder when there is none; one that is there has to be empty.
  explicit RecordingFolder(std::string path);
  // Removes the folder again when it was made here and has nothing in it.
  ~RecordingFolder();
  RecordingFolder(const RecordingFolder&) = delete;
  RecordingFolder& operator=(const RecordingFolder&) = delete;

  // The archive for that moment, "<milliseconds>.plist": there as a whole and for good when this
  // returns, and not at all when it throws.
  void write(std::int64_t moment, std::string_view archive);

 private:
  void requireEmpty() const;
  void writeAside(const std::string& name, std::string_view content) const;

  std::string _path;
  int _descriptor = -1;
  bool _isOurs = false;  // made here, and nothing written yet
};

}  // namespace Program
