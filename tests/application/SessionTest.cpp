#include "application/session/Session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/RAIDHost.h"
#include "platform/pelago/Logger.h"
#include "tests/application/support/StagedSource.h"
#include "tests/application/support/StoryObserver.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using Program::Session;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;
using TestSupport::twoBay;

constexpr std::uint64_t A = 0x000300000000000A;
constexpr std::uint64_t B = 0xFFFF00000000000B;  // the greater one, though negative when signed
const std::string deviceA = "device 0x000300000000000a";
const std::string deviceB = "device 0xffff00000000000b";

class SessionTest : public testing::Test {
 protected:
  SessionTest() : first(host, twoBay(A, 0)), second(host, twoBay(B, 1)) {}
  ~SessionTest() override { MemoryRegistry::reset(); }

  void plugInFirst() { first.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}}); }
  void plugInSecond() { second.complete().addDisks({1, 2}).addSet({"SET-B", {1, 2}}); }

  std::vector<std::string> storyOf(std::vector<StagedSource::Change> changes,
                                   Pelago::Milliseconds end, bool withLog = false) {
    StagedSource source(std::move(changes));
    StoryObserver observer(withLog);
    Session session(source, observer, end);
    session.run();
    lastDue = session.lastDue();
    return observer.story;
  }

  HostTree host = (MemoryRegistry::reset(), HostTree());
  EnclosureBuilder first;
  EnclosureBuilder second;
  Pelago::Milliseconds lastDue = -1;
};

TEST_F(SessionTest, DevicesThatAreThereAtFirstAreAnnouncedAtZeroInUnsignedOrderOneAfterTheOther) {
  plugInSecond();
  plugInFirst();
  EXPECT_THAT(storyOf({{0, [] {}}}, 0),
              ElementsAre("0 " + deviceA, "0 new SET-A", "0 " + deviceB, "0 new SET-B"));
}

TEST_F(SessionTest, DevicesThatAreGoneComeBeforeDevicesThatAreNew) {
  plugInSecond();
  const auto change = [this] {
    second.unplug();
    plugInFirst();
  };
  EXPECT_THAT(storyOf({{0, [] {}}, {700, change}}, 700),
              ElementsAre("0 " + deviceB, "0 new SET-B", "700 no " + deviceB, "700 gone SET-B",
                          "700 " + deviceA, "700 new SET-A"));
}

TEST_F(SessionTest, TheComputersOwnSwitchIsNoDevice) {
  EXPECT_THAT(storyOf({{0, [] {}}}, 5000), IsEmpty());
}

TEST_F(SessionTest, ADeviceWithoutADepthIsOne) {
  first.addSwitch();
  MemoryRegistry::removeProperty(first.switchEntry(), "Depth");
  EXPECT_THAT(storyOf({{0, [] {}}}, 0), ElementsAre("0 " + deviceA));
}

TEST_F(SessionTest, ASwitchWhoseUIDIsMissingOrNoNumberIsNoDevice) {
  first.addSwitch();
  second.addSwitch();
  MemoryRegistry::removeProperty(first.switchEntry(), "UID");
  MemoryRegistry::setProperty(second.switchEntry(), "UID", "12");
  EXPECT_THAT(storyOf({{0, [] {}}}, 0), IsEmpty());
}

TEST_F(SessionTest, DiscoveryLooksAtChangesOfContentOnly) {
  plugInFirst();
  const auto unplugLater = [this] { first.unplug(); };
  EXPECT_THAT(storyOf({{0, [] {}}, {2500, unplugLater}}, 9000),
              ElementsAre("0 " + deviceA, "0 new SET-A", "2500 no " + deviceA, "2500 gone SET-A"));
}

// The first device's bring-up has an event due at 2000, where the second device arrives and the
// refresh is due too.
TEST_F(SessionTest, AtOneMomentContentDiscoveryEventsAndTimerFollowEachOther) {
  const auto switchAlone = [this] { first.addSwitch(); };
  const auto everything = [this] {
    first.addPCIPath().complete();
    second.addSwitch();
  };
  const std::vector<std::string> story =
      storyOf({{0, [] {}}, {1900, switchAlone}, {2000, everything}}, 2000, true);
  std::vector<std::string> at2000;
  for (const std::string& line : story) {
    if (line.substr(0, 5) == "2000 ") at2000.push_back(line.substr(5));
  }
  const std::string looks = "log ThunderboltDevice - Trying to find upstream port for device '";
  const std::string refresh =
      "log ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object";
  ASSERT_GE(at2000.size(), 5U);
  EXPECT_EQ(deviceB, at2000[0]);
  EXPECT_EQ(looks + "ffff00000000000b'", at2000[1]);
  EXPECT_EQ(looks + "000300000000000a'", at2000[3]);
  EXPECT_EQ(refresh, at2000.back()) << "the second device's refresh";
}

TEST_F(SessionTest, NothingThatIsDueAfterTheEndHappens) {
  const auto plugIn = [this] { plugInFirst(); };
  EXPECT_THAT(storyOf({{0, [] {}}, {3000, plugIn}}, 2999), IsEmpty());
}

TEST_F(SessionTest, TheLastDueThingIsTheRefreshAtTheEnd) {
  storyOf({{0, [] {}}}, 4000);
  EXPECT_EQ(4000, lastDue);
}

TEST_F(SessionTest, TheLastDueThingMayLieBeforeTheEnd) {
  storyOf({{0, [] {}}}, 5999);
  EXPECT_EQ(4000, lastDue);
}

TEST_F(SessionTest, AnEventOfABringUpMayBeTheLastDueThing) {
  storyOf({{0, [] {}}, {2150, [this] { first.addSwitch(); }}}, 2399);
  EXPECT_EQ(2350, lastDue);
}

TEST_F(SessionTest, AChangeOfContentMayBeTheLastDueThing) {
  storyOf({{0, [] {}}, {2150, [] {}}}, 2399);
  EXPECT_EQ(2150, lastDue);
}

TEST_F(SessionTest, ItsEndTellsTheObserverNothing) {
  plugInFirst();
  StagedSource source({{0, [] {}}});
  StoryObserver observer(true);
  {
    Session session(source, observer, 0);
    session.run();
    observer.story.clear();
  }
  EXPECT_THAT(observer.story, IsEmpty());
}

TEST_F(SessionTest, ItsEndGivesTheLogBack) {
  StagedSource source({});
  StoryObserver observer(true);
  { const Session session(source, observer, 0); }
  testing::internal::CaptureStderr();
  Pelago::Logger::Message("Test", "text");
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("text"));
}

TEST_F(SessionTest, QuitEndsTheRunAfterWhatIsBeingDone) {
  plugInFirst();
  StagedSource source({{0, [] {}}, {700, [] { Pelago::Application::instance()->quit(); }}});
  StoryObserver observer;
  Session session(source, observer, std::nullopt);
  session.run();
  EXPECT_EQ(700, session.lastDue());
}

TEST_F(SessionTest, HostsAscendByTheUIDOfTheirDevice) {
  plugInSecond();
  plugInFirst();
  StagedSource source({{0, [] {}}});
  StoryObserver observer;
  Session session(source, observer, 0);
  session.run();
  const auto hosts = session.hosts();
  ASSERT_EQ(2U, hosts.size());
  EXPECT_EQ(A, hosts[0]->deviceID());
  EXPECT_EQ(B, hosts[1]->deviceID());
}

}  // namespace
}  // namespace ProgramTest
