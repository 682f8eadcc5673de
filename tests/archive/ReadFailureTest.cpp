// A file that can be opened and yet not read as it should. The linker sends the reader's calls of
// read() here first: see CMakeLists.txt.

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <deque>

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

class ReadFailure : public testing::Test {
 protected:
  ~ReadFailure() override { answers.clear(); }

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
  errno = answer.error;
  if (answer.error != 0) return -1;
  return __real_read(descriptor, buffer, std::min(size, answer.most));
}

namespace {

TEST_F(ReadFailure, IsNamedWithItsReason) {
  answers = {{EIO, 0}};
  EXPECT_EQ(file + ": cannot be read: Input/output error", reason());
  answers = {{0, 100}, {EIO, 0}};
  EXPECT_EQ(file + ": cannot be read: Input/output error", reason());
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
}

}  // namespace
