#include "platform/registry/memory/archive/ArchiveFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>

#include "platform/registry/memory/archive/ArchiveError.h"
#include "platform/registry/memory/archive/ArchiveLimits.h"

namespace MemoryRegistry {
namespace {

[[noreturn]] void failWithErrno(const std::string& file) {
  throw ArchiveError(file, "cannot be read: " + std::generic_category().message(errno));
}

class Descriptor {
 public:
  // Not blocking, so that a pipe without a writer is refused instead of waited for.
  explicit Descriptor(const std::string& file)
      : _number(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (_number < 0) failWithErrno(file);
  }
  ~Descriptor() { ::close(_number); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return _number; }

 private:
  int _number;
};

std::size_t sizeOf(const Descriptor& descriptor, const std::string& file) {
  struct stat status {};
  if (::fstat(descriptor.number(), &status) != 0) failWithErrno(file);
  if (S_ISDIR(status.st_mode)) throw ArchiveError(file, "is a folder, not a file");
  if (!S_ISREG(status.st_mode)) throw ArchiveError(file, "is not an ordinary file");
  if (status.st_size == 0) throw ArchiveError(file, "is empty");
  if (static_cast<std::uintmax_t>(status.st_size) > largestArchive) {
    throw ArchiveError(file, "is larger than 512 MiB");
  }
  return static_cast<std::size_t>(status.st_size);
}

}  // namespace

FileContent readFile(const std::string& file) {
  const Descriptor descriptor(file);
  const std::size_t size = sizeOf(descriptor, file);
  FileContent content{std::unique_ptr<char[]>(new char[size]), 0};
  while (content.size < size) {
    const ssize_t count =
        ::read(descriptor.number(), content.bytes.get() + content.size, size - content.size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) failWithErrno(file);
    if (count == 0) break;
    content.size += static_cast<std::size_t>(count);
  }
  return content;
}

}  // namespace MemoryRegistry
