#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

#include "platform/pelago/Application.h"
#include "platform/pelago/VirtualClock.h"
#include "tests/pelago/Doubles.h"
#include "tests/support/CapturingLog.h"
#include "tests/support/FailingMemory.h"

namespace PelagoTest {
namespace {

using Pelago::Application;
using Pelago::Event;
using testing::ElementsAre;

class EventQueue : public testing::Test {
 protected:
  void note(const std::string& what) {
    story.push_back(std::to_string(application.now()) + " " + what);
  }

  Story story;
  Pelago::VirtualClock clock;
  Application application{clock};
};

TEST_F(EventQueue, PostEventReturnsAtOnceAndDeliversNothing) {
  Receiver receiver([this](Event*) { note("heard"); });
  Application::PostEvent(&receiver, new Event(0, nullptr));
  EXPECT_EQ(Story{}, story);
  EXPECT_EQ(1U, application.queuedEvents());
}

TEST_F(EventQueue, AnEventIsDeliveredAHundredMillisecondsAfterItsPosting) {
  Receiver receiver([this](Event*) { note("heard"); });
  application.runThrough(7);
  Application::PostEvent(&receiver, new Event(0, nullptr));
  application.runThrough(106);
  EXPECT_EQ(Story{}, story);
  application.runThrough(107);
  EXPECT_THAT(story, ElementsAre("107 heard"));
}

TEST_F(EventQueue, TheReceiverGetsTheEventItself) {
  int data = 0;
  auto* posted = new Event(5, &data);
  bool same = false;
  Receiver receiver([&](Event* event) {
    same = event == posted && event->type() == 5 && event->data() == &data;
  });
  Application::PostEvent(&receiver, posted);
  application.runThrough(100);
  EXPECT_TRUE(same);
}

TEST_F(EventQueue, EventsAreDeliveredInTheOrderOfTheirPosting) {
  Receiver first([this](Event* event) { note("first " + std::to_string(event->type())); });
  Receiver second([this](Event* event) { note("second " + std::to_string(event->type())); });
  Application::PostEvent(&second, new Event(1, nullptr));
  Application::PostEvent(&first, new Event(2, nullptr));
  application.runThrough(30);
  Application::PostEvent(&second, new Event(3, nullptr));
  application.runThrough(1000);
  EXPECT_THAT(story, ElementsAre("100 second 1", "100 first 2", "130 second 3"));
}

TEST_F(EventQueue, AnEventIsDisposedOfAfterItsHandlerHasReturned) {
  Receiver receiver([this](Event*) { note("heard"); });
  Application::PostEvent(&receiver, new ToldEvent(story, "a"));
  Application::PostEvent(&receiver, new ToldEvent(story, "b"));
  application.runThrough(100);
  EXPECT_THAT(story, ElementsAre("100 heard", "end of a", "100 heard", "end of b"));
  EXPECT_EQ(0U, application.queuedEvents());
}

TEST_F(EventQueue, AnEventIsDisposedOfThroughItsDestroy) {
  class Reused : public Event {
   public:
    Reused() : Event(0, nullptr) {}
    void destroy() override { ++destroyed; }
    int destroyed = 0;
  };
  Reused event;
  Receiver receiver;
  Application::PostEvent(&receiver, &event);
  EXPECT_EQ(0, event.destroyed);
  application.runThrough(100);
  EXPECT_EQ(1, event.destroyed);
}

TEST_F(EventQueue, AnEventPostedFromAHandlerIsDeliveredAfterTheHandlerReturns) {
  Receiver poster([&](Event* event) {
    note("begin " + std::to_string(event->type()));
    if (event->type() < 3) Application::PostEvent(&poster, new Event(event->type() + 1, nullptr));
    note("end " + std::to_string(event->type()));
  });
  Application::PostEvent(&poster, new Event(1, nullptr));
  application.runThrough(1000);
  EXPECT_THAT(story, ElementsAre("100 begin 1", "100 end 1", "200 begin 2", "200 end 2",
                                 "300 begin 3", "300 end 3"));
}

TEST_F(EventQueue, AHandlerThatPostsToItselfForeverLooksTenTimesASecond) {
  int looks = 0;
  Receiver receiver([&](Event* event) {
    ++looks;
    Application::PostEvent(&receiver, new Event(event->type(), nullptr));
  });
  Application::PostEvent(&receiver, new Event(3, nullptr));
  application.runThrough(1000);
  EXPECT_EQ(10, looks);
}

TEST_F(EventQueue, AReceiverMayBeDestroyedByItsOwnHandler) {
  Receiver* receiver = nullptr;
  receiver = new Receiver([&](Event*) {
    note("heard");
    delete receiver;
  });
  Application::PostEvent(receiver, new ToldEvent(story, "the one in hand"));
  Application::PostEvent(receiver, new ToldEvent(story, "the next"));
  application.runThrough(1000);
  EXPECT_THAT(story, ElementsAre("100 heard", "end of the next", "end of the one in hand"));
}

TEST_F(EventQueue, AnExceptionFromAHandlerLeavesThroughTheRunAndDisposesOfTheEventInHandOnly) {
  Receiver receiver([this](Event* event) {
    note("heard " + std::to_string(event->type()));
    if (event->type() == 1) throw std::runtime_error("from the handler");
  });
  Application::PostEvent(&receiver, new ToldEvent(story, "a", 1));
  Application::PostEvent(&receiver, new ToldEvent(story, "b", 2));
  EXPECT_THROW(application.runThrough(500), std::runtime_error);
  EXPECT_THAT(story, ElementsAre("100 heard 1", "end of a"));
  EXPECT_EQ(1U, application.queuedEvents());
  application.runThrough(500);
  EXPECT_THAT(story, ElementsAre("100 heard 1", "end of a", "100 heard 2", "end of b"));
}

TEST_F(EventQueue, AnObjectDestroyedByAnotherOnesHandlerLosesItsEvents) {
  auto* victim = new Receiver([this](Event*) { note("victim hears"); });
  Receiver killer([&](Event*) { delete victim; });
  Application::PostEvent(&killer, new Event(0, nullptr));
  Application::PostEvent(victim, new ToldEvent(story, "a"));
  application.runThrough(1000);
  EXPECT_THAT(story, ElementsAre("end of a"));
}

TEST_F(EventQueue, AReceiverDestroyedAfterItsEventsWereDeliveredLeavesTheOthersQueued) {
  auto* receiver = new Receiver;
  Receiver other([this](Event*) { note("other hears"); });
  Application::PostEvent(receiver, new Event(0, nullptr));
  application.runThrough(100);
  Application::PostEvent(&other, new Event(0, nullptr));
  delete receiver;
  EXPECT_EQ(1U, application.queuedEvents());
  application.runThrough(200);
  EXPECT_THAT(story, ElementsAre("200 other hears"));
}

TEST_F(EventQueue, AHandlerMayRunTheLoopItself) {
  Receiver receiver([this](Event* event) {
    note("begin " + std::to_string(event->type()));
    if (event->type() == 1) application.runThrough(150);
    note("end " + std::to_string(event->type()));
  });
  Application::PostEvent(&receiver, new Event(1, nullptr));
  Application::PostEvent(&receiver, new Event(2, nullptr));
  application.runThrough(120);
  EXPECT_THAT(story, ElementsAre("100 begin 1", "100 begin 2", "100 end 2", "150 end 1"));
}

TEST_F(EventQueue, PostingToNoReceiverDisposesOfTheEventAndSaysSo) {
  TestSupport::CapturingLog log;
  Application::PostEvent(nullptr, new ToldEvent(story, "a"));
  EXPECT_THAT(story, ElementsAre("end of a"));
  EXPECT_THAT(log.lines(),
              ElementsAre(TestSupport::message(
                  "Application::PostEvent - No receiver, nothing is posted", "Pelago")));
  EXPECT_EQ(0U, application.queuedEvents());
}

TEST_F(EventQueue, PostingNoEventPostsNothingAndSaysSo) {
  TestSupport::CapturingLog log;
  Receiver receiver([this](Event*) { note("heard"); });
  Application::PostEvent(&receiver, nullptr);
  application.runThrough(1000);
  EXPECT_EQ(Story{}, story);
  EXPECT_THAT(log.lines(), ElementsAre(TestSupport::message(
                               "Application::PostEvent - No event, nothing is posted", "Pelago")));
}

// The queue takes memory in blocks of several events, so that many posts are tried.
TEST_F(EventQueue, LackOfMemoryInPostEventDisposesOfTheEventAndPropagates) {
  Receiver receiver([this](Event*) { note("heard"); });
  int failures = 0;
  int posted = 0;
  story.reserve(1000);
  for (int i = 0; i < 200; ++i) {
    auto* event = new ToldEvent(story, "x");
    try {
      const TestSupport::FailingAllocation failing(0);
      Application::PostEvent(&receiver, event);
      ++posted;
    } catch (const std::bad_alloc&) {
      ++failures;
      Application::PostEvent(&receiver, new Event(0, nullptr));  // makes room for further ones
      ++posted;
    }
  }
  EXPECT_LT(0, failures);
  EXPECT_EQ(static_cast<std::size_t>(failures), story.size());
  EXPECT_EQ(static_cast<std::size_t>(posted), application.queuedEvents());
}

TEST(EventQueueWithoutApplication, PostEventDisposesOfTheEventAndSaysSoInOneLine) {
  TestSupport::CapturingLog log;
  Story story;
  Receiver receiver([&](Event*) { story.push_back("heard"); });
  Application::PostEvent(&receiver, new ToldEvent(story, "a"));
  EXPECT_THAT(story, ElementsAre("end of a"));
  EXPECT_THAT(log.lines(),
              ElementsAre(TestSupport::message(
                  "Application::PostEvent - No application, nothing is posted", "Pelago")));
}

TEST(EventQueueWithoutApplication, AnObjectIsDestroyedAsUsual) {
  Story story;
  {
    Pelago::VirtualClock clock;
    auto* receiver = new Receiver;
    {
      const Application application(clock);
      Application::PostEvent(receiver, new ToldEvent(story, "a"));
      Application::PostEvent(receiver, new ToldEvent(story, "b"));
    }
    EXPECT_THAT(story, ElementsAre("end of a", "end of b"));
    delete receiver;  // nothing is queued for it any more
  }
  EXPECT_EQ(2U, story.size());
}

TEST(EventQueueWithoutApplication, TheEndOfTheApplicationDisposesOfTheEventsUndelivered) {
  Story story;
  Pelago::VirtualClock clock;
  Receiver receiver([&](Event*) { story.push_back("heard"); });
  {
    const Application application(clock);
    Application::PostEvent(&receiver, new ToldEvent(story, "a"));
  }
  EXPECT_THAT(story, ElementsAre("end of a"));
}

TEST(EventQueueWithoutApplication, ADisposalAtItsEndMayEndAnotherReceiver) {
  class Ending : public Event {
   public:
    explicit Ending(Pelago::Object* victim) : Event(0, nullptr), _victim(victim) {}
    ~Ending() override { delete _victim; }

   private:
    Pelago::Object* _victim;
  };
  Story story;
  Pelago::VirtualClock clock;
  Receiver receiver;
  auto* victim = new Receiver;
  {
    const Application application(clock);
    Application::PostEvent(&receiver, new Ending(victim));
    Application::PostEvent(victim, new ToldEvent(story, "a"));
    Application::PostEvent(&receiver, new ToldEvent(story, "b"));
  }
  EXPECT_THAT(story, ElementsAre("end of a", "end of b"));
}

}  // namespace
}  // namespace PelagoTest
