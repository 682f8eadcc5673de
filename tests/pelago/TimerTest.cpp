#include "platform/pelago/Timer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/pelago/Application.h"
#include "platform/pelago/VirtualClock.h"
#include "tests/pelago/Doubles.h"
#include "tests/support/CapturingLog.h"

namespace PelagoTest {
namespace {

using Pelago::Application;
using Pelago::Event;
using Pelago::Milliseconds;
using testing::ElementsAre;

class Timer : public testing::Test {
 protected:
  void note() { expiries.push_back(application.now()); }

  std::vector<Milliseconds> expiries;
  Pelago::VirtualClock clock;
  Application application{clock};
  HandlingTimer timer{[this] { note(); }};
};

TEST_F(Timer, ANewTimerIsStopped) {
  EXPECT_FALSE(timer.running());
  application.runThrough(100000);
  EXPECT_THAT(expiries, ElementsAre());
}

TEST_F(Timer, ExpiresEveryPeriodUntilItIsStopped) {
  application.runThrough(500);
  timer.start(2000);
  EXPECT_TRUE(timer.running());
  application.runThrough(6500);
  EXPECT_THAT(expiries, ElementsAre(2500, 4500, 6500));
  timer.stop();
  EXPECT_FALSE(timer.running());
  application.runThrough(100000);
  EXPECT_THAT(expiries, ElementsAre(2500, 4500, 6500));
}

TEST_F(Timer, APeriodOfZeroCountsAsOne) {
  timer.start(0);
  application.runThrough(3);
  EXPECT_THAT(expiries, ElementsAre(1, 2, 3));
}

TEST_F(Timer, TheLongestPeriodIsKept) {
  timer.start(4294967295U);
  application.runThrough(4294967294);
  EXPECT_THAT(expiries, ElementsAre());
  application.runThrough(2 * 4294967295);
  EXPECT_THAT(expiries, ElementsAre(4294967295, 2 * 4294967295));
}

TEST_F(Timer, StartOnARunningTimerRestartsIt) {
  timer.start(2000);
  application.runThrough(1500);
  timer.start(1000);
  EXPECT_TRUE(timer.running());
  application.runThrough(4000);
  EXPECT_THAT(expiries, ElementsAre(2500, 3500));
}

TEST_F(Timer, ARestartMovesTheTimerBehindThoseStartedBefore) {
  Story story;
  HandlingTimer first([&] { story.push_back("first"); });
  HandlingTimer second([&] { story.push_back("second"); });
  HandlingTimer third([&] { story.push_back("third"); });
  first.start(100);
  second.start(100);
  third.start(100);
  first.start(100);
  application.runThrough(100);
  EXPECT_THAT(story, ElementsAre("second", "third", "first"));
}

TEST_F(Timer, StopOnAStoppedTimerIsHarmless) {
  timer.stop();
  EXPECT_FALSE(timer.running());
  timer.start(10);
  timer.stop();
  timer.stop();
  EXPECT_FALSE(timer.running());
  application.runThrough(100);
  EXPECT_THAT(expiries, ElementsAre());
}

TEST_F(Timer, AStoppedTimerMayBeStartedAgain) {
  timer.start(10);
  timer.stop();
  application.runThrough(5);
  timer.start(10);
  application.runThrough(25);
  EXPECT_THAT(expiries, ElementsAre(15, 25));
}

TEST_F(Timer, ExpiriesThatALateLoopMissedAreSkippedAndThePhaseIsKept) {
  timer.start(2000);
  clock.waitUntil(6500);
  application.runThrough(6500);
  EXPECT_THAT(expiries, ElementsAre(6500));
  application.runThrough(10000);
  EXPECT_THAT(expiries, ElementsAre(6500, 8000, 10000));
}

TEST_F(Timer, ALoopThatIsLateByWholePeriodsExpiresOnceForAllOfThem) {
  timer.start(2000);
  clock.waitUntil(6000);
  application.runThrough(7999);
  EXPECT_THAT(expiries, ElementsAre(6000));
  application.runThrough(8000);
  EXPECT_THAT(expiries, ElementsAre(6000, 8000));
}

TEST_F(Timer, ALoopLateToTheEndOfTimeDoesNotOverflow) {
  timer.start(2000);
  clock.waitUntil(Pelago::Clock::Never - 1);
  application.runThrough(Pelago::Clock::Never - 1);
  EXPECT_THAT(expiries, ElementsAre(Pelago::Clock::Never - 1));
}

TEST_F(Timer, ADestroyedTimerStops) {
  auto other = std::make_unique<HandlingTimer>([this] { note(); });
  other->start(10);
  timer.start(25);
  application.runThrough(10);
  other.reset();
  application.runThrough(50);
  EXPECT_THAT(expiries, ElementsAre(10, 25, 50));
}

TEST_F(Timer, MayStopItselfInTimeout) {
  HandlingTimer once([&] {
    note();
    once.stop();
  });
  once.start(10);
  application.runThrough(100);
  EXPECT_THAT(expiries, ElementsAre(10));
}

TEST_F(Timer, MayRestartItselfInTimeout) {
  HandlingTimer growing([&] {
    note();
    growing.start(static_cast<unsigned>(expiries.size() + 1) * 10);
  });
  growing.start(10);
  application.runThrough(100);
  EXPECT_THAT(expiries, ElementsAre(10, 30, 60, 100));
}

TEST_F(Timer, MayDeleteItselfInTimeout) {
  HandlingTimer* mortal = nullptr;
  mortal = new HandlingTimer([&] {
    note();
    delete mortal;
  });
  mortal->start(10);
  timer.start(30);
  application.runThrough(30);
  EXPECT_THAT(expiries, ElementsAre(10, 30));
}

TEST_F(Timer, MayStartStopAndDeleteOthersInTimeout) {
  auto victim = std::make_unique<HandlingTimer>([this] { note(); });
  std::vector<std::unique_ptr<HandlingTimer>> started;
  HandlingTimer stopped([this] { note(); });
  HandlingTimer acting([&] {
    victim.reset();
    stopped.stop();
    for (int i = 0; i < 20; ++i) {
      started.push_back(std::make_unique<HandlingTimer>([this] { note(); }));
      started.back()->start(5);
    }
    acting.stop();
  });
  acting.start(10);
  victim->start(10);
  stopped.start(10);
  application.runThrough(15);
  EXPECT_EQ(std::vector<Milliseconds>(20, 15), expiries);
}

TEST_F(Timer, AnExceptionFromTimeoutLeavesThroughTheRunAndTheTimerGoesOn) {
  HandlingTimer throwing([this] {
    note();
    if (expiries.size() == 1) throw std::runtime_error("from timeout");
  });
  throwing.start(10);
  EXPECT_THROW(application.runThrough(100), std::runtime_error);
  EXPECT_TRUE(throwing.running());
  application.runThrough(30);
  EXPECT_THAT(expiries, ElementsAre(10, 20, 30));
}

TEST_F(Timer, IsNotDeletedByTheFramework) {
  struct Told : Pelago::Timer {
    explicit Told(bool& ended) : _ended(ended) {}
    ~Told() override { _ended = true; }
    bool& _ended;
  };
  bool ended = false;
  {
    Told told(ended);
    told.start(10);
    application.runThrough(100);
    told.stop();
    EXPECT_FALSE(ended);
  }
  EXPECT_TRUE(ended);
}

TEST_F(Timer, TheBaseVersionOfTimeoutDoesNothing) {
  Pelago::Timer plain;
  plain.start(10);
  EXPECT_TRUE(application.runThrough(100));
  EXPECT_TRUE(plain.running());
}

TEST(TimerWithoutApplication, StartIsLoggedAndLeavesTheTimerStopped) {
  TestSupport::CapturingLog log;
  Pelago::Timer timer;
  timer.start(2000);
  EXPECT_FALSE(timer.running());
  timer.stop();
  EXPECT_THAT(log.lines(),
              ElementsAre(TestSupport::message(
                  "Timer::start - No application, the timer stays stopped", "Pelago")));
}

TEST(TimerWithoutApplication, TheEndOfTheApplicationStopsTheTimersThatAreLeft) {
  Pelago::VirtualClock clock;
  int expiries = 0;
  HandlingTimer timer([&] { ++expiries; });
  {
    Application application(clock);
    timer.start(10);
    application.runThrough(10);
  }
  EXPECT_FALSE(timer.running());
  timer.stop();
  Application application(clock);
  application.runThrough(100);
  EXPECT_EQ(1, expiries);
  timer.start(10);
  application.runThrough(110);
  EXPECT_EQ(2, expiries);
}

TEST(TimerWithoutApplication, ATimerMayBeDestroyedAfterTheApplication) {
  Pelago::VirtualClock clock;
  auto timer = std::make_unique<Pelago::Timer>();
  {
    const Application application(clock);
    timer->start(10);
  }
  timer.reset();
  EXPECT_EQ(nullptr, Application::instance());
}

}  // namespace
}  // namespace PelagoTest
