#include "platform/pelago/WakePipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <set>
#include <system_error>

namespace PelagoTest {
namespace {

using Pelago::Clock;
using Pelago::WakePipe;

std::set<int> openDescriptors() {
  std::set<int> open;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) != -1) open.insert(descriptor);
  }
  return open;
}

TEST(WakePipe, AWakeEndsTheNextSleepAndOnlyThat) {
  WakePipe pipe;
  pipe.wake();
  EXPECT_TRUE(pipe.sleep(Clock::Never));
  EXPECT_FALSE(pipe.sleep(0));
}

TEST(WakePipe, TakenTellsOfAWakeOnce) {
  WakePipe pipe;
  EXPECT_FALSE(pipe.taken());
  pipe.wake();
  pipe.wake();
  EXPECT_TRUE(pipe.taken());
  EXPECT_FALSE(pipe.taken());
  EXPECT_FALSE(pipe.sleep(0));
}

// As by a wake() whose flag was taken before it came to writing.
TEST(WakePipe, AByteWithoutItsFlagEndsOneSleepAndNoOther) {
  const std::set<int> before = openDescriptors();
  WakePipe pipe;
  int read = -1;
  for (const int descriptor : openDescriptors()) {
    if (before.count(descriptor) != 0) continue;
    const bool writes = (::fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_WRONLY;
    if (writes) {
      ASSERT_EQ(1, ::write(descriptor, "", 1));
    } else {
      read = descriptor;
    }
  }
  EXPECT_FALSE(pipe.sleep(Clock::Never));
  pollfd left{read, POLLIN, 0};
  EXPECT_EQ(0, ::poll(&left, 1, 0)) << "the next sleep would end at once, and the one after it";
}

TEST(WakePipe, ASleepWithoutAWakeEndsAfterItsSpan) {
  WakePipe pipe;
  EXPECT_FALSE(pipe.sleep(1));
  EXPECT_FALSE(pipe.sleep(-1));
}

TEST(WakePipe, WakingNeverBlocksHoweverOften) {
  WakePipe pipe;
  for (int i = 0; i < 200000; ++i)
    pipe.wake();
  EXPECT_TRUE(pipe.sleep(Clock::Never));
  EXPECT_FALSE(pipe.sleep(0));
}

TEST(WakePipe, WakingKeepsErrno) {
  WakePipe pipe;
  for (int i = 0; i < 200000; ++i) {  // a full pipe sets it
    errno = ENOTTY;
    pipe.wake();
    ASSERT_EQ(ENOTTY, errno) << i;
  }
}

TEST(WakePipe, ItsDescriptorsDoNotBlockAreNotInheritedAndAreClosedAtItsEnd) {
  const std::set<int> before = openDescriptors();
  {
    const WakePipe pipe;
    int own = 0;
    for (const int descriptor : openDescriptors()) {
      if (before.count(descriptor) != 0) continue;
      ++own;
      EXPECT_NE(0, ::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) << descriptor;
      EXPECT_NE(0, ::fcntl(descriptor, F_GETFL) & O_NONBLOCK) << descriptor;
    }
    EXPECT_EQ(2, own);
  }
  EXPECT_EQ(before, openDescriptors());
}

TEST(WakePipe, WithoutADescriptorLeftTheConstructorThrows) {
  // Made and looked at here first, because a sanitizer that meets a class for the first time needs
  // descriptors itself.
  const std::system_error met(EMFILE, std::generic_category(), "");
  ASSERT_EQ(EMFILE, met.code().value());
  rlimit kept{};
  ASSERT_EQ(0, ::getrlimit(RLIMIT_NOFILE, &kept));
  const rlimit none{0, kept.rlim_max};
  ASSERT_EQ(0, ::setrlimit(RLIMIT_NOFILE, &none));
  std::exception_ptr thrown;
  try {
    const WakePipe pipe;
  } catch (...) {
    thrown = std::current_exception();
  }
  ::setrlimit(RLIMIT_NOFILE, &kept);
  ASSERT_TRUE(thrown);
  try {
    std::rethrow_exception(thrown);
  } catch (const std::system_error& failure) {
    EXPECT_EQ(EMFILE, failure.code().value());
    EXPECT_STREQ("WakePipe - No pipe: Too many open files", failure.what());
  }
}

}  // namespace
}  // namespace PelagoTest
