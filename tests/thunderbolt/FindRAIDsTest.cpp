#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "model/RAIDVolume.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using TestSupport::addEntry;

// A device with two disks that knows its bridge and no sets.
class FindRAIDs : public DeviceTest {
 protected:
  void SetUp() override {
    two.complete().addDisks({1, 2});
    _device.emplace(UID);
    _keptBefore = kept(two.bridge());
    log().clear();
  }
  void TearDown() override {
    for (RAIDVolume* volume : _found)
      volume->deref();
    _device.reset();
    // Counted where the name of a test says so.
    if (!_counted) expectKept(two.bridge(), kept(two.bridge()));
    DeviceTest::TearDown();
  }

  // Searches, once in a test, whose end gives the references back.
  const std::set<RAIDVolume*>& find() {
    _found = device()->findRAIDs();
    return _found;
  }
  const std::set<RAIDVolume*>& found() const { return _found; }
  // The search has kept so many references on the bridge, its own one included.
  void expectKeptOnBridge(std::uint64_t references) {
    EXPECT_EQ(_keptBefore + references, kept(two.bridge()));
    expectKept(two.bridge(), _keptBefore + references);
    _counted = true;
  }
  const HeldDevice& device() const { return *_device; }

 private:
  std::optional<HeldDevice> _device;
  std::set<RAIDVolume*> _found;
  std::uint64_t _keptBefore = 0;
  bool _counted = false;
};

TEST_F(FindRAIDs, WithNoSetBeneathTheBridgeFindsNothing) {
  EXPECT_THAT(find(), IsEmpty());
  EXPECT_THAT(log().lines(), IsEmpty());
  expectKeptOnBridge(1);
}

TEST_F(FindRAIDs, ReadsANewSetAndDoesNotFileIt) {
  addBareSet(addBareMember(two.port(1), "M"), "SET", {"M"});
  ASSERT_THAT(find(), SizeIs(1));
  const RAIDVolume* volume = *found().begin();
  EXPECT_EQ("SET", volume->uuid());
  EXPECT_EQ("Bare", volume->name());
  EXPECT_EQ(VolumeOnline, volume->state());
  EXPECT_EQ(device().get(), volume->host());
  EXPECT_EQ(1, volume->references());
  EXPECT_TRUE(device()->raidVolumes().empty());
}

TEST_F(FindRAIDs, KeepsTheBridgeOnceForItselfAndOnceForEachVolumeRead) {
  addBareSet(addBareMember(two.port(1), "M"), "SET", {"M"});
  find();
  expectKeptOnBridge(1 + keptAtFirstSight(1));
}

TEST_F(FindRAIDs, AnUnknownSetMetOncePerParentYieldsAVolumeEachTime) {
  const EntryID member = addBareMember(two.port(1), "M1");
  const EntryID set = addBareSet(member, "SET", {"M1", "M2", "M3"});
  MemoryRegistry::attach(set, addBareMember(two.port(2), "M2"));
  MemoryRegistry::attach(set, addBareMember(two.port(2), "M3"));
  ASSERT_THAT(find(), SizeIs(3));
  for (const RAIDVolume* volume : found()) {
    EXPECT_EQ("SET", volume->uuid());
    EXPECT_EQ(1, volume->references());
    EXPECT_THAT(volume->members(), SizeIs(3));
  }
  EXPECT_TRUE(device()->raidVolumes().empty());
}

TEST_F(FindRAIDs, AnUnknownSetMetOncePerParentKeepsTheBridgeOncePerVolume) {
  two.addSet({"SET", {1, 2}});
  EXPECT_THAT(find(), SizeIs(2));
  expectKeptOnBridge(1 + keptAtFirstSight(2));
}

TEST_F(FindRAIDs, AKnownSetIsReReadAndReturnedAsTheSameObject) {
  const EntryID set = addBareSet(addBareMember(two.port(1), "M"), "SET", {"M"});
  device()->refresh();
  RAIDVolume* volume = device()->raidVolumes().at(0);
  MemoryRegistry::setProperty(set, "AppleRAID-SetStatus", "Degraded");
  MemoryRegistry::setProperty(set, "AppleRAID-SetName", "Renamed");
  EXPECT_THAT(find(), ElementsAre(volume));
  EXPECT_EQ(2, volume->references());  // the host's and the search's
  EXPECT_EQ(VolumeDegraded, volume->state());
  EXPECT_EQ("Renamed", volume->name());
  expectKeptOnBridge(1 + keptAtFirstSight(1) + 1 + keptAtLaterSight(1, 1));
}

// The result has the volume once, so only one of the references can be given back.
TEST_F(FindRAIDs, AKnownSetMetOncePerParentIsReferencedEachTimeAndReturnedOnce) {
  two.addSet({"SET", {1, 2}});
  device()->refresh();
  RAIDVolume* volume = device()->raidVolumes().at(0);
  ASSERT_EQ(1, volume->references());
  EXPECT_THAT(find(), ElementsAre(volume));
  EXPECT_EQ(3, volume->references());
  expectKeptOnBridge(1 + keptAtFirstSight(2) + 1 + keptAtLaterSight(2, 2));
}

TEST_F(FindRAIDs, FindsSetsOfEveryKindAndNoMembers) {
  const EntryID member = addBareMember(two.port(1), "M");
  for (const char* level : {"Mirror", "Stripe", "Concat"}) {
    addBareSet(member, level, {"M"}, level);
  }
  addEntry(member, "AppleRAIDSet", "", "", {{"AppleRAID-SetUUID", "Plain"}});
  std::set<std::string> uuids;
  for (const RAIDVolume* volume : find())
    uuids.insert(volume->uuid());
  EXPECT_THAT(uuids, ElementsAre("Concat", "Mirror", "Plain", "Stripe"));
}

TEST_F(FindRAIDs, PassesOverSetsOutsideTheBridge) {
  addBareSet(addBareMember(host.tunnel(1), "M"), "SET", {"M"});
  EXPECT_THAT(find(), IsEmpty());
}

TEST_F(FindRAIDs, ASetWithoutAUUIDIsKnownByTheEmptyText) {
  const EntryID set = addBareSet(addBareMember(two.port(1), "M"), "", {"M"});
  MemoryRegistry::removeProperty(set, "AppleRAID-SetUUID");
  device()->refresh();
  ASSERT_THAT(device()->raidVolumes(), SizeIs(1));
  EXPECT_EQ("", device()->raidVolumes()[0]->uuid());
  EXPECT_EQ(VolumeOnline, device()->raidVolumes()[0]->state());
  EXPECT_THAT(find(), ElementsAre(device()->raidVolumes()[0]));
}

TEST_F(FindRAIDs, AVolumeWhoseOwnReadFailsIsReturnedAllTheSame) {
  addBareSet(addBareMember(two.port(1), "M"), "SET", {"M"});
  fail(Operation::IORegistryEntryFromPath, 2);  // 1 is the search's own
  ASSERT_THAT(find(), SizeIs(1));
  EXPECT_EQ("SET", (*found().begin())->uuid());
  EXPECT_EQ(VolumeFailed, (*found().begin())->state());
  EXPECT_THAT(
      log().lines(),
      ElementsAre(
          message("RAIDVolume::EntryFromUUID - Cannot find back the PCI Bridge object"),
          message("RAIDVolume::refresh - Couldn't find the RAID Set entry for UUID 'SET'")));
}

TEST_F(FindRAIDs, WithAFailedLookUpOfTheBridgeFindsNothingAndSaysSo) {
  addBareSet(addBareMember(two.port(1), "M"), "SET", {"M"});
  fail(Operation::IORegistryEntryFromPath, 1);
  EXPECT_THAT(find(), IsEmpty());
  EXPECT_THAT(log().lines(),
              ElementsAre(message(
                  "ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object")));
  expectKeptOnBridge(0);
}

TEST_F(FindRAIDs, WithAFailedWalkFindsNothingSaysSoAndKeepsTheBridge) {
  addBareSet(addBareMember(two.port(1), "M"), "SET", {"M"});
  std::uint64_t times = 0;
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    fail(Operation::IORegistryEntryCreateIterator, 1, row.failure);
    EXPECT_THAT(device()->findRAIDs(), IsEmpty());
    EXPECT_THAT(log().take(),
                ElementsAre(message(
                    "ThunderboltDevice::findRAIDs - couldn't create iterator on PCI Bridge")));
    ++times;
  }
  expectKeptOnBridge(times);
}

TEST_F(FindRAIDs, BeforeTheBridgeIsKnownFindsNothingAndSaysSo) {
  const HeldDevice unknown(UID + 1);
  log().clear();
  EXPECT_THAT(unknown->findRAIDs(), IsEmpty());
  EXPECT_THAT(log().lines(),
              ElementsAre(message(
                  "ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object")));
  expectKeptOnBridge(0);
}

}  // namespace
}  // namespace RAIDMonitoring
