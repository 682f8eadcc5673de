#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace Program {

// A file that can't be written: one line that names it and the reason.
class FileError : public std::runtime_error {
 public:
  FileError(const std::string& path, const std::string& reason);
};

// A file that appears whole or not at all. What is written goes into a file without a claim to the
// name, in the same folder; commit() brings it to the disk and gives it the name, in place of
// whatever bore it. Without a commit nothing has happened.
//
// The other file is hidden and ends in ".tmp", so nobody who looks for "*.prom" or "*.plist" meets
// it. Only a process that is killed leaves one behind.
//
// A name that is a symbolic link stays one: the file it leads to is replaced. What exists and is no
// ordinary file (a folder, a device, a pipe) is refused.
//
// Thread:  one thread.
// Failure: every operation throws FileError; the file that was there stays as it was. Only an error
//          of commit() that says "may not last" comes after the replacement.
class AtomicFile {
 public:
  enum class Readers {
    AsUsual,   // as the umask says
    Everybody  // whatever the umask says
  };

  explicit AtomicFile(const std::string& path, Readers readers = Readers::AsUsual);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void write(std::string_view text);

  // Last.
  void commit();

  // All at once.
  static void replace(const std::string& path, std::string_view text,
                      Readers readers = Readers::AsUsual);

 private:
  void open();
  void close();
  void check(bool done) const;
  void syncFolder() const;

  std::string _path;  // as it was asked for
  std::string _target;
  std::string _folder;
  std::string _temporary;  // empty when there is none any more
  int _descriptor = -1;
};

}  // namespace Program
