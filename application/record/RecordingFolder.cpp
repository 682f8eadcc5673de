#include "application/record/RecordingFolder.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "application/files/AtomicFile.h"

namespace Program {

namespace fs = std::filesystem;

RecordingFolder::RecordingFolder(std::string path) : _path(std::move(path)) {
  std::error_code error;
  _isOurs = fs::create_directory(_path, error);
  if (_isOurs) return;
  if (error) throw FileError(_path, "cannot be made: " + error.message());
  const bool isEmpty = fs::directory_iterator(_path, error) == fs::directory_iterator();
  if (error) throw FileError(_path, "cannot be read: " + error.message());
  if (!isEmpty) throw FileError(_path, "is not empty");
}

RecordingFolder::~RecordingFolder() {
  std::error_code ignored;
  if (_isOurs) fs::remove(_path, ignored);  // leaves a folder that is not empty
}

void RecordingFolder::write(std::int64_t moment, std::string_view archive) const {
  AtomicFile::replace((fs::path(_path) / (std::to_string(moment) + ".plist")).string(), archive);
}

}  // namespace Program
