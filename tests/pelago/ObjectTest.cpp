#include "platform/pelago/Object.h"

#include <gtest/gtest.h>

#include "platform/pelago/Application.h"
#include "platform/pelago/VirtualClock.h"
#include "tests/pelago/Doubles.h"

namespace PelagoTest {
namespace {

class Told : public Pelago::Object {
 public:
  explicit Told(Story& story) : _story(story) {}
  ~Told() override { _story.push_back("destructor"); }
  void destroy() override {
    _story.push_back("destroy");
    Object::destroy();
  }

 private:
  Story& _story;
};

class Kept : public Pelago::Object {
 public:
  void destroy() override { ++destroyed; }
  int destroyed = 0;
};

TEST(Object, ANewObjectHoldsNoReference) {
  const Kept object;
  EXPECT_EQ(0, object.references());
}

TEST(Object, RefAndDerefCount) {
  Kept object;
  object.ref();
  object.ref();
  EXPECT_EQ(2, object.references());
  object.deref();
  EXPECT_EQ(1, object.references());
  EXPECT_EQ(0, object.destroyed);
}

TEST(Object, DerefOfTheLastReferenceRunsDestroyAndSoTheDestructor) {
  Story story;
  auto* object = new Told(story);
  object->ref();
  object->ref();
  object->deref();
  EXPECT_EQ(Story{}, story);
  object->deref();
  EXPECT_EQ((Story{"destroy", "destructor"}), story);
}

TEST(Object, AnOverriddenDestroyDecidesWhetherTheObjectEnds) {
  Kept object;
  object.ref();
  object.deref();
  EXPECT_EQ(1, object.destroyed);
  EXPECT_EQ(0, object.references());
}

TEST(Object, AnObjectNeverReferencedIsNeverDestroyedByTheFramework) {
  Story story;
  auto* object = new Told(story);
  {
    Pelago::VirtualClock clock;
    Pelago::Application application(clock);
    Pelago::Application::PostEvent(object, new Pelago::Event(1, nullptr));
    application.runThrough(1000);
    Pelago::Application::PostEvent(object, new Pelago::Event(2, nullptr));
  }
  EXPECT_EQ(Story{}, story);
  delete object;
  EXPECT_EQ(Story{"destructor"}, story);
}

TEST(Object, TheBaseVersionIgnoresEvents) {
  Kept object;
  Pelago::Event event(3, nullptr);
  object.event(&event);
  object.event(nullptr);
  EXPECT_EQ(0, object.references());
}

TEST(Object, PostingTakesNoReference) {
  Pelago::VirtualClock clock;
  const Pelago::Application application(clock);
  Kept object;
  Pelago::Application::PostEvent(&object, new Pelago::Event(1, nullptr));
  EXPECT_EQ(0, object.references());
}

TEST(Object, ADestroyedObjectLosesItsQueuedEventsThroughTheirDestroy) {
  Pelago::VirtualClock clock;
  Pelago::Application application(clock);
  Story story;
  Receiver other([&](Pelago::Event*) { story.push_back("other hears"); });
  {
    Receiver receiver([&](Pelago::Event*) { story.push_back("dead one hears"); });
    Pelago::Application::PostEvent(&receiver, new ToldEvent(story, "a"));
    Pelago::Application::PostEvent(&other, new ToldEvent(story, "b"));
    Pelago::Application::PostEvent(&receiver, new ToldEvent(story, "c"));
    EXPECT_EQ(3U, application.queuedEvents());
  }
  EXPECT_EQ((Story{"end of a", "end of c"}), story);
  EXPECT_EQ(1U, application.queuedEvents());
  application.runThrough(1000);
  EXPECT_EQ((Story{"end of a", "end of c", "other hears", "end of b"}), story);
}

TEST(Object, AnEventWhoseDisposalPostsToTheDyingObjectIsDroppedToo) {
  class Reposting : public Pelago::Event {
   public:
    Reposting(Pelago::Object* receiver, Story& story)
        : Event(0, nullptr), _receiver(receiver), _story(story) {}
    ~Reposting() override {
      Pelago::Application::PostEvent(_receiver, new ToldEvent(_story, "reposted"));
    }

   private:
    Pelago::Object* _receiver;
    Story& _story;
  };
  Pelago::VirtualClock clock;
  Pelago::Application application(clock);
  Story story;
  auto* receiver = new Receiver;
  Pelago::Application::PostEvent(receiver, new Reposting(receiver, story));
  delete receiver;
  EXPECT_EQ(Story{"end of reposted"}, story);
  EXPECT_EQ(0U, application.queuedEvents());
}

}  // namespace
}  // namespace PelagoTest
