#include "application/watch/WatchObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/session/Session.h"
#include "application/watch/WatchListener.h"
#include "tests/application/support/StagedSource.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using Program::VolumeEvent;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;
using TestSupport::twoBay;

// Keeps what it hears.
class KeepingListener : public Program::WatchListener {
 public:
  void heard(const Program::WatchEvent& event) override {
    if (const auto* volume = std::get_if<VolumeEvent>(&event.what)) volumes.push_back(*volume);
    if (const auto* line = std::get_if<Program::LogEvent>(&event.what)) log.push_back(line->text);
  }
  void instantEnded(const Program::Overview& overview) override { overviews.push_back(overview); }

  std::vector<VolumeEvent> volumes;
  std::vector<std::string> log;
  std::vector<Program::Overview> overviews;
};

class WatchObserverTest : public testing::Test {
 protected:
  WatchObserverTest() : first(host, twoBay(7, 0)), second(host, twoBay(8, 1)) {}
  ~WatchObserverTest() override { MemoryRegistry::reset(); }

  void watch(std::vector<StagedSource::Change> changes, Pelago::Milliseconds end,
             bool log = false) {
    StagedSource source(std::move(changes));
    Program::WatchObserver observer(log);
    observer.add(listener);
    observer.add(other);
    Program::Session session(source, observer, end);
    session.run();
  }

  HostTree host = (MemoryRegistry::reset(), HostTree());
  EnclosureBuilder first;
  EnclosureBuilder second;
  KeepingListener listener;
  KeepingListener other;
};

TEST_F(WatchObserverTest, AsksForSlotsWhenAVolumeAppearsAndNotWhenItDisappears) {
  first.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  watch({{0, [] {}}, {500, [this] { first.unplug(); }}}, 500);
  ASSERT_EQ(2U, listener.volumes.size());
  EXPECT_EQ(1, listener.volumes[0].volume.members.at(0).slot);
  EXPECT_EQ(2, listener.volumes[0].volume.members.at(1).slot);
  EXPECT_EQ(VolumeEvent::Kind::Disappeared, listener.volumes[1].kind);
  for (const auto& member : listener.volumes[1].volume.members)
    EXPECT_FALSE(member.slot);
}

// The set is announced through the first enclosure and updated through both; when the first one has
// left, whoever prints the set's end says what was said last, and touches no host.
TEST_F(WatchObserverTest, AVolumeDisappearsFromTheDeviceOfItsLastLine) {
  first.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  second.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  watch({{0, [] {}}, {2500, [this] { first.unplug(); }}}, 2500);
  ASSERT_GE(listener.volumes.size(), 3U);
  const auto& last = listener.volumes[listener.volumes.size() - 2];
  const auto& gone = listener.volumes.back();
  EXPECT_EQ(VolumeEvent::Kind::Updated, last.kind);
  EXPECT_EQ(VolumeEvent::Kind::Disappeared, gone.kind);
  EXPECT_EQ(last.volume.device, gone.volume.device);
  EXPECT_EQ(last.enclosure.uid, gone.enclosure.uid);
}

TEST_F(WatchObserverTest, DropsTheLogUnlessItIsWanted) {
  first.addSwitch();
  watch({{0, [] {}}}, 0);
  EXPECT_TRUE(listener.log.empty());
  watch({{0, [] {}}}, 0, true);
  EXPECT_FALSE(listener.log.empty());
}

TEST_F(WatchObserverTest, EveryListenerHearsTheSame) {
  first.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  watch({{0, [] {}}, {500, [this] { first.unplug(); }}}, 500, true);
  EXPECT_EQ(listener.log, other.log);
  EXPECT_EQ(listener.volumes.size(), other.volumes.size());
  EXPECT_EQ(listener.overviews.size(), other.overviews.size());
}

TEST_F(WatchObserverTest, AtTheEndOfAMomentCountsWhatThereIs) {
  first.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  second.complete().addDisks({1, 2}).addSet({"SET", {1, 2}}).addSet({"OTHER", {1}});
  watch({{0, [] {}}, {500, [this] { first.unplug(); }}}, 500);
  ASSERT_GE(listener.overviews.size(), 2U);
  const Program::Overview& before = listener.overviews.front();
  EXPECT_EQ(2U, before.enclosures.size());
  std::size_t volumes = 0;
  for (const auto& [state, count] : before.volumes)
    volumes += count;
  EXPECT_EQ(2U, volumes) << "the one that both show counts once";
  EXPECT_EQ(0, before.lastLook);
  EXPECT_EQ(1U, listener.overviews.back().enclosures.size());
  EXPECT_EQ(500, listener.overviews.back().lastLook);
}

}  // namespace
}  // namespace ProgramTest
