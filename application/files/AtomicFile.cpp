#include "application/files/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "application/text/TextCharacters.h"

namespace Program {
namespace {

constexpr mode_t ReadableByEverybody = 0644;

std::string reasonOf(int error) { return std::generic_category().message(error); }

// Where a chain of links ends, also if nothing is there yet.
std::string followed(const std::string& path) {
  constexpr int links = 40;  // as many as systems follow
  std::filesystem::path end = path;
  std::error_code error;
  for (int link = 0; link < links; ++link) {
    if (!std::filesystem::is_symlink(end, error)) return end.string();
    end = end.parent_path() / std::filesystem::read_symlink(end, error);
    if (error) throw FileError(path, "cannot be written: " + error.message());
  }
  throw FileError(path, "cannot be written: " + reasonOf(ELOOP));
}

std::string folderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

void refuseWhatIsNoFile(const std::string& path, const std::string& target) {
  if (target.empty() || target.back() == '/') throw FileError(path, "is no name of a file");
  struct stat status {};
  if (stat(target.c_str(), &status) != 0) return;
  if (S_ISDIR(status.st_mode)) throw FileError(path, "is a folder, not a file");
  if (!S_ISREG(status.st_mode)) throw FileError(path, "is not an ordinary file");
}

}  // namespace

FileError::FileError(const std::string& path, const std::string& reason)
    : std::runtime_error(printable(path, Charset::Unicode) + ": " + reason) {}

AtomicFile::AtomicFile(const std::string& path, Readers readers)
    : _path(path), _target(followed(path)), _folder(folderOf(_target)) {
  refuseWhatIsNoFile(_path, _target);
  open();
  try {
    check(readers == Readers::AsUsual || fchmod(_descriptor, ReadableByEverybody) == 0);
  } catch (...) {
    close();
    throw;
  }
}

AtomicFile::~AtomicFile() { close(); }

// The name is taken by a process that was killed, at worst, so the next one will do.
void AtomicFile::open() {
  for (int attempt = 0; _descriptor == -1; ++attempt) {
    _temporary = _folder + "/.raidmonitor." + std::to_string(getpid()) + "." +
                 std::to_string(attempt) + ".tmp";
    _descriptor = ::open(_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    check(_descriptor != -1 || errno == EEXIST);
  }
}

void AtomicFile::close() {
  if (_descriptor != -1) ::close(_descriptor);
  if (_descriptor != -1 && !_temporary.empty()) unlink(_temporary.c_str());
  _descriptor = -1;
}

void AtomicFile::check(bool done) const {
  if (!done) throw FileError(_path, "cannot be written: " + reasonOf(errno));
}

void AtomicFile::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(_descriptor, text.data(), text.size());
    check(written >= 0 || errno == EINTR);
    if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void AtomicFile::commit() {
  check(fsync(_descriptor) == 0);
  check(std::rename(_temporary.c_str(), _target.c_str()) == 0);
  _temporary.clear();
  close();
  syncFolder();
}

// The new name has to outlast a loss of power too. Some file systems can't be asked for that.
void AtomicFile::syncFolder() const {
  const int folder = ::open(_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder == -1) return;  // a folder may be written and not be read
  const bool done = fsync(folder) == 0 || errno == EINVAL || errno == ENOTSUP;
  const int error = errno;
  ::close(folder);
  if (!done) throw FileError(_path, "is written, and may not last: " + reasonOf(error));
}

void AtomicFile::replace(const std::string& path, std::string_view text, Readers readers) {
  AtomicFile file(path, readers);
  file.write(text);
  file.commit();
}

}  // namespace Program
