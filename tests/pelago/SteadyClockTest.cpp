#include "platform/pelago/SteadyClock.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>

#include "tests/pelago/Alarm.h"

namespace PelagoTest {
namespace {

using Pelago::Clock;
using Pelago::Milliseconds;
using Pelago::SteadyClock;

// Long enough for a clock that polls to show itself, short enough for a test.
constexpr Milliseconds tinyWait = 20;

long timesAsleep() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_nvcsw;
}

TEST(SteadyClock, StartsAtZeroAndFollowsRealTime) {
  const auto before = std::chrono::steady_clock::now();
  const SteadyClock clock;
  const Milliseconds present = clock.now();
  const std::chrono::milliseconds shown(present);
  EXPECT_LE(0, present);
  EXPECT_LE(shown, std::chrono::steady_clock::now() - before);
}

TEST(SteadyClock, AMomentThatHasPassedIsNoWait) {
  SteadyClock clock;
  EXPECT_TRUE(clock.waitUntil(0));
  EXPECT_TRUE(clock.waitUntil(-1000000));
}

TEST(SteadyClock, AWaitLastsUntilTheMomentAndSleeps) {
  SteadyClock clock;
  const long before = timesAsleep();
  const Milliseconds moment = clock.now() + tinyWait;
  EXPECT_TRUE(clock.waitUntil(moment));
  EXPECT_GE(clock.now(), moment);
  EXPECT_LE(timesAsleep() - before, 5);  // each waking would be one more
}

TEST(SteadyClock, AnInterruptEndsTheNextWait) {
  SteadyClock clock;
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(Clock::Never));
  clock.interrupt();
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(clock.now() + 1000000));
  EXPECT_TRUE(clock.waitUntil(clock.now() + 1));
}

TEST(SteadyClock, AMomentThatIsNowIsNoWaitAndLeavesTheInterruptForTheNext) {
  SteadyClock clock;
  clock.interrupt();
  for (int i = 0; i < 1000; ++i)
    ASSERT_TRUE(clock.waitUntil(clock.now()));
  EXPECT_FALSE(clock.waitUntil(clock.now() + 1000000));
}

// Of many short waits, on however busy a machine, one that did sleep is shorter than the clock is
// old.
TEST(SteadyClock, AWaitIsCountedFromNowAndNotFromTheStart) {
  SteadyClock clock;
  ASSERT_TRUE(clock.waitUntil(tinyWait));
  bool shorter = false;
  for (int i = 0; i < 100 && !shorter; ++i) {
    const Milliseconds before = clock.now();
    const long sleeps = timesAsleep();
    ASSERT_TRUE(clock.waitUntil(before + 1));
    shorter = timesAsleep() > sleeps && clock.now() - before < before;
  }
  EXPECT_TRUE(shorter);
}

TEST(SteadyClock, AWaitBeyondWhatTheSystemCanCountEndsByAnInterrupt) {
  SteadyClock clock;
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(Clock::Never - 1));
}

// ---- Signals

SteadyClock* sleeping = nullptr;
volatile std::sig_atomic_t signals = 0;

extern "C" void interruptAtTheThird(int /*signal*/) {
  signals = signals + 1;
  if (signals == 3) sleeping->interrupt();
}

extern "C" void countSignal(int /*signal*/) { signals = signals + 1; }

TEST(SteadyClock, ASignalThatDoesNotInterruptTheClockDoesNotEndAWaitAndOneThatDoesEndsIt) {
  SteadyClock clock;
  sleeping = &clock;
  signals = 0;
  const Alarm alarm(interruptAtTheThird);
  EXPECT_FALSE(clock.waitUntil(Clock::Never));
  EXPECT_LE(3, signals);
}

TEST(SteadyClock, SignalsDoNotShortenAWait) {
  SteadyClock clock;
  signals = 0;
  const Alarm alarm(countSignal);
  const Milliseconds moment = clock.now() + tinyWait;
  EXPECT_TRUE(clock.waitUntil(moment));
  EXPECT_GE(clock.now(), moment);
  EXPECT_LT(0, signals);
}

}  // namespace
}  // namespace PelagoTest
