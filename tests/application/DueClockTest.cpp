#include "application/session/DueClock.h"

#include <gtest/gtest.h>

#include "platform/pelago/VirtualClock.h"

namespace ProgramTest {
namespace {

using Program::DueClock;

TEST(DueClock, RemembersTheLastMomentThatWasWaitedForUpToTheEnd) {
  Pelago::VirtualClock time;
  DueClock clock(time, 200);
  EXPECT_EQ(0, clock.lastDue());
  EXPECT_TRUE(clock.waitUntil(150));
  EXPECT_EQ(150, clock.lastDue());
  EXPECT_TRUE(clock.waitUntil(200));
  EXPECT_EQ(200, clock.lastDue());
  EXPECT_TRUE(clock.waitUntil(201));
  EXPECT_EQ(200, clock.lastDue());
  EXPECT_EQ(201, clock.now());
}

TEST(DueClock, DoesNotGoBackForAMomentThatHasPassed) {
  Pelago::VirtualClock time;
  DueClock clock(time, DueClock::NoEnd);
  clock.waitUntil(150);
  EXPECT_TRUE(clock.waitUntil(100));
  EXPECT_EQ(150, clock.lastDue());
}

TEST(DueClock, DoesNotCountAWaitThatWasInterrupted) {
  Pelago::VirtualClock time;
  DueClock clock(time, DueClock::NoEnd);
  clock.interrupt();
  EXPECT_FALSE(clock.waitUntil(150));
  EXPECT_EQ(0, clock.lastDue());
}

}  // namespace
}  // namespace ProgramTest
