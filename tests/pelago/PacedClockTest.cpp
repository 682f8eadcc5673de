#include "platform/pelago/PacedClock.h"

#include <gtest/gtest.h>

#include "platform/pelago/Application.h"

namespace PelagoTest {
namespace {

using Pelago::Clock;
using Pelago::Milliseconds;
using Pelago::PacedClock;
using Pelago::SteadyClock;

TEST(PacedClock, StartsAtZeroAndStandsStillBetweenWaits) {
  PacedClock clock;
  const SteadyClock real;
  EXPECT_EQ(0, clock.now());
  while (real.now() < 2) {
  }
  EXPECT_EQ(0, clock.now());
}

TEST(PacedClock, AJumpIsExactAndTakesAsLongInRealTime) {
  const SteadyClock real;
  PacedClock clock;
  EXPECT_TRUE(clock.waitUntil(5));
  EXPECT_EQ(5, clock.now());
  EXPECT_LE(5, real.now());
}

// The interrupt would end any wait: five jumps without one show that none had to wait.
TEST(PacedClock, AReplayThatFellBehindCatchesUpWithoutWaiting) {
  PacedClock clock;
  SteadyClock real;
  real.waitUntil(6);
  clock.interrupt();
  for (Milliseconds moment = 1; moment <= 5; ++moment)
    EXPECT_TRUE(clock.waitUntil(moment)) << moment;
  EXPECT_EQ(5, clock.now());
}

TEST(PacedClock, AMomentThatHasPassedIsNoWait) {
  PacedClock clock;
  clock.interrupt();
  EXPECT_TRUE(clock.waitUntil(0));
  EXPECT_TRUE(clock.waitUntil(-1));
  EXPECT_EQ(0, clock.now());
}

TEST(PacedClock, AnInterruptEndsTheNextWaitWithoutAJump) {
  PacedClock clock;
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(1000000));
  EXPECT_EQ(0, clock.now());
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(Clock::Never));
  EXPECT_TRUE(clock.waitUntil(1));
  EXPECT_EQ(1, clock.now());
}

TEST(PacedClock, CarriesAnApplication) {
  PacedClock clock;
  Pelago::Application application(clock);
  EXPECT_TRUE(application.runThrough(3));
  EXPECT_EQ(3, application.now());
  application.quit();
  application.run();
  EXPECT_EQ(3, application.now());
}

}  // namespace
}  // namespace PelagoTest
