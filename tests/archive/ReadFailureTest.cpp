// A file that can be opened and yet not read as it should. The linker sends the reader's calls of
// read() and fstat() here first: see CMakeLists.txt.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <utility>

#include "platform/registry/memory/archive/ArchiveError.h"
#include "tests/archive/Support.h"

using MemoryRegistry::ArchiveError;
using MemoryRegistry::readArchive;

namespace {

// What a call does: fails, or reads at most so much.
struct Answer {
  int error;
  std::size_t most;
};

// For the next calls; those behind them are the system's alone.
std::deque<Answer> answers;

// Of the next fstat(); 0: none.
int statusError = 0;

class ReadFailure : public testing::Test {
 protected:
  ~ReadFailure() override {
    answers.clear();
    statusError = 0;
  }

  std::string reason() const {
    try {
      readArchive(file);
    } catch (const ArchiveError& error) {
      return error.what();
    }
    return {};
  }

  const TemporaryFolder folder;
  const std::string text = archive(children(entry("2")));
  const std::string file = folder.write("0.plist", text);
};

}  // namespace

extern "C" ssize_t __real_read(int descriptor, void* buffer, std::size_t size);

extern "C" ssize_t __wrap_read(int descriptor, void* buffer, std::size_t size) {
  if (answers.empty()) return __real_read(descriptor, buffer, size);
  const Answer answer = answers.front();
  answers.pop_front();
  if (answer.error != 0) {
    errno = answer.error;
    return -1;
  }
  return __real_read(descriptor, buffer, std::min(size, answer.most));
}

extern "C" int __real_fstat(int descriptor, struct stat* status);

extern "C" int __wrap_fstat(int descriptor, struct stat* status) {
  if (statusError == 0) return __real_fstat(descriptor, status);
  errno = std::exchange(statusError, 0);
  return -1;
}

namespace {

TEST_F(ReadFailure, IsNamedWithItsReason) {
  answers = {{EIO, 0}};
  EXPECT_EQ(file + ": cannot be read: Input/output error", reason());
  answers = {{0, 100}, {EIO, 0}};
  EXPECT_EQ(file + ": cannot be read: Input/output error", reason());
}

TEST_F(ReadFailure, OfTheFilesStateIsNamedWithItsReason) {
  statusError = EIO;
  EXPECT_EQ(file + ": cannot be read: Input/output error", reason());
}

// Then the file is descriptor 0.
TEST_F(ReadFailure, AProgramWithoutStandardInputHasNone) {
  const int kept = ::dup(STDIN_FILENO);
  ASSERT_EQ(0, ::close(STDIN_FILENO));
  EXPECT_EQ("", reason());
  ASSERT_EQ(-1, ::close(STDIN_FILENO)) << "the file is still open";
  if (kept >= 0) {
    ::dup2(kept, STDIN_FILENO);
    ::close(kept);
  }
}

TEST_F(ReadFailure, ASignalIsNone) {
  answers = {{EINTR, 0}, {0, 100}, {EINTR, 0}, {EINTR, 0}};
  EXPECT_TRUE(parse(text) == readArchive(file));
  EXPECT_TRUE(answers.empty());
}

TEST_F(ReadFailure, PiecesAreNone) {
  answers = {{0, 1}, {0, 2}, {0, 50}};
  EXPECT_TRUE(parse(text) == readArchive(file));
}

TEST_F(ReadFailure, AFileThatShrinksMeanwhileIsTakenForWhatIsThere) {
  answers = {{0, 100}, {0, 0}};
  EXPECT_EQ(file + ": is not a complete property list: it ends in the middle", reason());
  answers = {{EINTR, 0}, {0, 100}, {0, 0}};  // what a signal has left in errno is not the end's
  EXPECT_EQ(file + ": is not a complete property list: it ends in the middle", reason());
}

}  // namespace
