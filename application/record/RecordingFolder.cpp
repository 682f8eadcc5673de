#include "application/record/RecordingFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

namespace Program {
namespace {

constexpr const char* AsideName = ".raidmonitor-record.tmp";

[[noreturn]] void fail(const std::string& what, const char* attempt, int error) {
  throw RecordingError(what + " cannot be " + attempt + ": " +
                       std::generic_category().message(error));
}

// A descriptor that is closed at the end; close() reports what only closing tells.
class Descriptor {
 public:
  explicit Descriptor(int number) : _number(number) {}
  ~Descriptor() {
    if (_number != -1) ::close(_number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return _number; }
  bool close() { return ::close(std::exchange(_number, -1)) == 0 || errno == EINTR; }

 private:
  int _number;
};

// False with errno set.
bool writeAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Some filesystems can't do it for folders, and say so.
bool flush(int descriptor) { return ::fsync(descriptor) == 0 || errno == EINVAL; }

}  // namespace

RecordingFolder::RecordingFolder(std::string path) : _path(std::move(path)) {
  if (::mkdir(_path.c_str(), 0777) == 0) {
    _isOurs = true;
  } else if (errno != EEXIST) {
    fail(_path, "made", errno);
  }
  _descriptor = ::open(_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (_descriptor == -1) fail(_path, "opened", errno);
  try {
    requireEmpty();
  } catch (...) {
    ::close(_descriptor);
    throw;
  }
}

RecordingFolder::~RecordingFolder() {
  ::close(_descriptor);
  if (_isOurs) ::rmdir(_path.c_str());
}

void RecordingFolder::requireEmpty() const {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(_path.c_str()), ::closedir);
  if (folder == nullptr) fail(_path, "read", errno);
  while (const dirent* entry = ::readdir(folder.get())) {
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
      throw RecordingError(_path + " is not empty");
    }
  }
}

void RecordingFolder::write(std::int64_t moment, std::string_view archive) {
  const std::string name = std::to_string(moment) + ".plist";
  try {
    writeAside(_path + "/" + name, archive);
    if (::renameat(_descriptor, AsideName, _descriptor, name.c_str()) != 0) {
      fail(_path + "/" + name, "written", errno);
    }
  } catch (...) {
    ::unlinkat(_descriptor, AsideName, 0);
    throw;
  }
  _isOurs = false;
  if (!flush(_descriptor)) fail(_path, "written", errno);
}

void RecordingFolder::writeAside(const std::string& name, std::string_view content) const {
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  Descriptor file(::openat(_descriptor, AsideName, flags, 0666));
  const bool written = file.number() != -1 && writeAll(file.number(), content) &&
                       flush(file.number()) && file.close();
  if (!written) fail(name, "written", errno);
}

}  // namespace Program
