#include "platform/pelago/VirtualClock.h"

#include <gtest/gtest.h>

namespace PelagoTest {
namespace {

using Pelago::Clock;
using Pelago::VirtualClock;

TEST(VirtualClock, StartsAtZero) { EXPECT_EQ(0, VirtualClock().now()); }

TEST(VirtualClock, JumpsToTheMoment) {
  VirtualClock clock;
  EXPECT_TRUE(clock.waitUntil(2000));
  EXPECT_EQ(2000, clock.now());
  EXPECT_TRUE(clock.waitUntil(Clock::Never - 1));
  EXPECT_EQ(Clock::Never - 1, clock.now());
}

TEST(VirtualClock, NeverGoesBack) {
  VirtualClock clock;
  clock.waitUntil(2000);
  EXPECT_TRUE(clock.waitUntil(1999));
  EXPECT_TRUE(clock.waitUntil(-5));
  EXPECT_EQ(2000, clock.now());
}

TEST(VirtualClock, AnInterruptEndsTheNextWaitWithoutAJump) {
  VirtualClock clock;
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(10));
  EXPECT_EQ(0, clock.now());
  EXPECT_TRUE(clock.waitUntil(10));
  EXPECT_EQ(10, clock.now());
}

TEST(VirtualClock, AnInterruptWaitsForTheNextWaitThatHasToWait) {
  VirtualClock clock;
  clock.interrupt();
  EXPECT_TRUE(clock.waitUntil(0));
  EXPECT_FALSE(clock.waitUntil(1));
}

TEST(VirtualClock, AWaitForNeverEndsByAnInterrupt) {
  VirtualClock clock;
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(Clock::Never));
  EXPECT_EQ(0, clock.now());
}

}  // namespace
}  // namespace PelagoTest
