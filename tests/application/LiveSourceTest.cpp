#include "application/registries/LiveSource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/session/Session.h"
#include "platform/pelago/VirtualClock.h"
#include "tests/application/support/StoryObserver.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using Program::LiveSource;

std::unique_ptr<Pelago::Clock> stagedTime() { return std::make_unique<Pelago::VirtualClock>(); }

TEST(LiveSource, AsksForALookEverySecond) {
  LiveSource source(stagedTime());
  EXPECT_EQ(0, source.nextLook());
  source.prepareLook();
  EXPECT_EQ(1000, source.nextLook());
  source.clock().waitUntil(1000);
  source.prepareLook();
  EXPECT_EQ(2000, source.nextLook());
}

TEST(LiveSource, DoesNotMakeUpForLooksThatWereMissed) {
  LiveSource source(stagedTime());
  source.clock().waitUntil(5300);
  source.prepareLook();
  EXPECT_EQ(5300, source.nextLook());
  source.prepareLook();
  EXPECT_EQ(6300, source.nextLook());
}

TEST(LiveSource, NeverEndsAndKeepsNoAccounts) {
  const LiveSource source(stagedTime());
  EXPECT_EQ(std::nullopt, source.end());
  EXPECT_FALSE(source.accounts());
}

TEST(LiveSource, FindsADeviceThatIsThereWhenTheSessionStarts) {
  MemoryRegistry::reset();
  const TestSupport::HostTree host;
  TestSupport::EnclosureBuilder enclosure(host, TestSupport::twoBay(7));
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  LiveSource source(stagedTime());
  StoryObserver observer;
  {
    Program::Session session(source, observer, 2000);
    session.run();
    EXPECT_EQ(2000, session.lastDue());
  }
  EXPECT_THAT(observer.story, testing::ElementsAre("0 device 0x0000000000000007", "0 new SET"));
  MemoryRegistry::reset();
}

}  // namespace
}  // namespace ProgramTest
