#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Program {

// The folder that a recording is written into.
//
// Failure: FileError. Nothing that was written before is touched.
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
  void write(std::int64_t moment, std::string_view archive) const;

 private:
  std::string _path;
  bool _isOurs = false;  // made here
};

}  // namespace Program
