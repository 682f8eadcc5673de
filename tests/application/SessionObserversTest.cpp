#include "application/session/SessionObservers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/session/Session.h"
#include "tests/application/support/StagedSource.h"
#include "tests/application/support/StoryObserver.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;

// Writes down when a moment is over, among what happens at it.
class MomentObserver : public StoryObserver {
 public:
  void instantEnded(const Program::Session&) override { story.emplace_back("over"); }
};

class SessionObserversTest : public testing::Test {
 protected:
  ~SessionObserversTest() override { MemoryRegistry::reset(); }

  void play(Program::SessionObserver& observer, Pelago::Milliseconds end) {
    EnclosureBuilder enclosure(host, TestSupport::twoBay(7, 0));
    enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
    StagedSource source({{0, [] {}}, {700, [&enclosure] { enclosure.unplug(); }}});
    Program::Session session(source, observer, end);
    session.run();
  }

  HostTree host = (MemoryRegistry::reset(), HostTree());
};

TEST_F(SessionObserversTest, EachHearsEverything) {
  StoryObserver first(true);
  StoryObserver second(true);
  Program::SessionObservers both;
  both.add(first);
  both.add(second);
  play(both, 700);
  EXPECT_THAT(first.story, Not(IsEmpty()));
  EXPECT_EQ(first.story, second.story);
}

TEST_F(SessionObserversTest, AMomentIsOverBeforeTheNextOneBegins) {
  MomentObserver observer;
  Program::SessionObservers observers;
  observers.add(observer);
  play(observers, 700);
  EXPECT_THAT(observer.story,
              ElementsAre("0 device 0x0000000000000007", "0 new SET", "over",
                          "700 no device 0x0000000000000007", "700 gone SET", "over", "over"));
}

// So that a watch whose output has gone does not do another moment's work.
TEST_F(SessionObserversTest, WhoQuitsAtTheEndOfAMomentSeesNoOtherOne) {
  class Quitter : public MomentObserver {
   public:
    void instantEnded(const Program::Session& session) override {
      MomentObserver::instantEnded(session);
      if (story.size() > 1) Pelago::Application::instance()->quit();
    }
  } observer;
  play(observer, 700);
  EXPECT_THAT(observer.story,
              ElementsAre("0 device 0x0000000000000007", "0 new SET", "over", "over"));
}

}  // namespace
}  // namespace ProgramTest
