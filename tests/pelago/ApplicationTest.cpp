#include "platform/pelago/Application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>

#include "platform/pelago/SteadyClock.h"
#include "platform/pelago/VirtualClock.h"
#include "tests/pelago/Alarm.h"
#include "tests/pelago/Doubles.h"

namespace PelagoTest {
namespace {

using Pelago::Application;
using Pelago::Event;
using Pelago::Milliseconds;
using testing::ElementsAre;

class ApplicationRun : public testing::Test {
 protected:
  void note(const std::string& what) {
    story.push_back(std::to_string(application.now()) + " " + what);
  }

  Story story;
  Pelago::VirtualClock clock;
  Application application{clock};
};

TEST(Application, InstanceIsTheOneThatExists) {
  EXPECT_EQ(nullptr, Application::instance());
  {
    Pelago::VirtualClock clock;
    const Application application(clock);
    EXPECT_EQ(&application, Application::instance());
  }
  EXPECT_EQ(nullptr, Application::instance());
}

TEST(Application, ASecondOneIsRefusedAndTheFirstStays) {
  Pelago::VirtualClock clock;
  const Application application(clock);
  EXPECT_THROW(Application{clock}, std::logic_error);
  EXPECT_EQ(&application, Application::instance());
}

TEST(Application, OneMayFollowAnother) {
  Pelago::VirtualClock clock;
  for (int i = 0; i < 2; ++i) {
    Application application(clock);
    int heard = 0;
    Receiver receiver([&](Event*) { ++heard; });
    Application::PostEvent(&receiver, new Event(0, nullptr));
    application.runThrough(application.now() + 100);
    EXPECT_EQ(1, heard);
  }
}

TEST_F(ApplicationRun, NowIsTheClocks) {
  EXPECT_EQ(0, application.now());
  clock.waitUntil(42);
  EXPECT_EQ(42, application.now());
}

TEST_F(ApplicationRun, BeforeAMomentLeavesOutWhatIsDueAtIt) {
  Receiver receiver([this](Event*) { note("heard"); });
  Application::PostEvent(&receiver, new Event(0, nullptr));
  EXPECT_TRUE(application.runBefore(100));
  EXPECT_EQ(Story{}, story);
  EXPECT_EQ(100, application.now());
  EXPECT_TRUE(application.runBefore(101));
  EXPECT_THAT(story, ElementsAre("100 heard"));
  EXPECT_EQ(101, application.now());
}

TEST_F(ApplicationRun, ThroughAMomentIncludesWhatIsDueAtItAndWhatThatMakesDue) {
  Receiver receiver([this](Event*) { note("event"); });
  HandlingTimer timer([this] { note("timer"); });
  Application::PostEvent(&receiver, new Event(0, nullptr));
  timer.start(100);
  EXPECT_TRUE(application.runThrough(100));
  EXPECT_THAT(story, ElementsAre("100 event", "100 timer"));
}

TEST_F(ApplicationRun, WaitsUntilTheMomentEvenWithNothingDue) {
  EXPECT_TRUE(application.runThrough(5000));
  EXPECT_EQ(5000, application.now());
  EXPECT_TRUE(application.runBefore(6000));
  EXPECT_EQ(6000, application.now());
}

TEST_F(ApplicationRun, AMomentThatHasPassedIsNoRun) {
  application.runThrough(1000);
  Receiver receiver([this](Event*) { note("heard"); });
  Application::PostEvent(&receiver, new Event(0, nullptr));
  EXPECT_TRUE(application.runThrough(500));
  EXPECT_TRUE(application.runThrough(-1));
  EXPECT_EQ(1000, application.now());
  EXPECT_EQ(Story{}, story);
}

TEST_F(ApplicationRun, ThingsHappenInTheOrderInWhichTheyAreDue) {
  Receiver receiver([this](Event* event) { note("event " + std::to_string(event->type())); });
  HandlingTimer slow([this] { note("slow"); });
  HandlingTimer fast([this] { note("fast"); });
  slow.start(150);
  fast.start(70);
  Application::PostEvent(&receiver, new Event(1, nullptr));
  application.runThrough(200);
  EXPECT_THAT(story, ElementsAre("70 fast", "100 event 1", "140 fast", "150 slow"));
}

TEST_F(ApplicationRun, AtOneMomentEventsComeBeforeTimersAndTimersInTheOrderOfTheirStart) {
  HandlingTimer first([this] { note("first timer"); });
  HandlingTimer second([this] { note("second timer"); });
  Receiver receiver([this](Event* event) { note("event " + std::to_string(event->type())); });
  second.start(300);
  first.start(600);  // the later start, though its first expiry is the second's second one
  application.runThrough(500);
  Application::PostEvent(&receiver, new Event(1, nullptr));
  Application::PostEvent(&receiver, new Event(2, nullptr));
  application.runThrough(600);
  EXPECT_THAT(story, ElementsAre("300 second timer", "600 event 1", "600 event 2",
                                 "600 second timer", "600 first timer"));
}

TEST_F(ApplicationRun, QuitFromAHandlerEndsTheRunAfterTheHandler) {
  Receiver receiver([this](Event* event) {
    if (event->type() == 1) application.quit();
    note("event " + std::to_string(event->type()));
  });
  Application::PostEvent(&receiver, new Event(1, nullptr));
  Application::PostEvent(&receiver, new Event(2, nullptr));
  EXPECT_FALSE(application.runThrough(500));
  EXPECT_THAT(story, ElementsAre("100 event 1"));
  EXPECT_EQ(100, application.now());
  EXPECT_TRUE(application.runThrough(500));
  EXPECT_THAT(story, ElementsAre("100 event 1", "100 event 2"));
}

TEST_F(ApplicationRun, QuitOutsideARunEndsTheNextOneAndOnlyThat) {
  const struct {
    const char* name;
    bool (Application::*run)(Milliseconds);
  } rows[] = {{"runBefore", &Application::runBefore}, {"runThrough", &Application::runThrough}};
  Milliseconds moment = 0;
  for (const auto& row : rows) {
    const Milliseconds start = application.now();
    moment += 1000;
    application.quit();
    EXPECT_FALSE((application.*row.run)(moment)) << row.name;
    EXPECT_EQ(start, application.now()) << row.name;
    EXPECT_TRUE((application.*row.run)(moment)) << row.name;
    EXPECT_EQ(moment, application.now()) << row.name;
  }
  application.quit();
  application.run();
  EXPECT_EQ(moment, application.now());
}

TEST_F(ApplicationRun, TwoQuitsBeforeARunEndOne) {
  application.quit();
  application.quit();
  EXPECT_FALSE(application.runThrough(10));
  EXPECT_TRUE(application.runThrough(10));
}

TEST_F(ApplicationRun, QuittingLastsFromQuitUntilItsRunHasReturned) {
  EXPECT_FALSE(application.quitting());
  bool within = false;
  Receiver receiver([&](Event*) {
    application.quit();
    within = application.quitting();
  });
  Application::PostEvent(&receiver, new Event(0, nullptr));
  application.runThrough(500);
  EXPECT_TRUE(within);
  EXPECT_FALSE(application.quitting());
  application.quit();
  EXPECT_TRUE(application.quitting());
}

TEST_F(ApplicationRun, RunGoesOnUntilQuit) {
  int expiries = 0;
  HandlingTimer timer([&] {
    if (++expiries == 5) application.quit();
  });
  timer.start(2000);
  application.run();
  EXPECT_EQ(5, expiries);
  EXPECT_EQ(10000, application.now());
}

TEST_F(ApplicationRun, QuitMayComeFromAnotherThread) {
  std::thread other([this] { application.quit(); });
  application.run();
  other.join();
  EXPECT_EQ(0, application.now());
}

TEST_F(ApplicationRun, AnInterruptOfTheClockAloneEndsNoRun) {
  clock.interrupt();
  EXPECT_TRUE(application.runThrough(1000));
  EXPECT_EQ(1000, application.now());
}

TEST_F(ApplicationRun, AtTheEndOfTimeAnEventNeverBecomesDue) {
  Receiver receiver([this](Event*) { note("heard"); });
  HandlingTimer timer([this] { note("expired"); });
  EXPECT_TRUE(application.runThrough(Pelago::Clock::Never - 1));
  Application::PostEvent(&receiver, new Event(0, nullptr));
  timer.start(4000000000U);
  EXPECT_TRUE(application.runThrough(Pelago::Clock::Never - 1));
  EXPECT_EQ(Story{}, story);
}

// ---- From a signal handler

Application* signalled = nullptr;

extern "C" void quitSignalled(int /*signal*/) { signalled->quit(); }

class SignalledQuit : public testing::Test {
 protected:
  SignalledQuit() : _before(std::signal(SIGUSR1, quitSignalled)) {}
  ~SignalledQuit() override { std::signal(SIGUSR1, _before); }

 private:
  void (*_before)(int);
};

TEST_F(SignalledQuit, EndsARunOnTheVirtualClock) {
  Pelago::VirtualClock clock;
  Application application(clock);
  signalled = &application;
  int heard = 0;
  Receiver receiver([&](Event*) {
    std::raise(SIGUSR1);
    ++heard;
    Application::PostEvent(&receiver, new Event(0, nullptr));
  });
  Application::PostEvent(&receiver, new Event(0, nullptr));
  application.run();
  EXPECT_EQ(1, heard);
}

TEST_F(SignalledQuit, EndsARunOnTheSteadyClockThatHasNothingDue) {
  Pelago::SteadyClock clock;
  Application application(clock);
  signalled = &application;
  std::raise(SIGUSR1);
  application.run();
  EXPECT_FALSE(application.quitting());
}

TEST_F(SignalledQuit, EndsARunThatSleepsWithNothingDue) {
  const struct {
    const char* name;
    bool real;
  } rows[] = {{"steady clock", true}, {"virtual clock", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Pelago::SteadyClock steady;
    Pelago::VirtualClock jumping;
    Application application(row.real ? static_cast<Pelago::Clock&>(steady) : jumping);
    signalled = &application;
    const Alarm alarm(quitSignalled);
    application.run();
  }
}

}  // namespace
}  // namespace PelagoTest
