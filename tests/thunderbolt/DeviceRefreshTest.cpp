#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "model/RAIDVolume.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// Writes down what its own search files and unfiles.
class WatchedDevice : public ThunderboltDevice {
 public:
  using ThunderboltDevice::ThunderboltDevice;

  void addRAIDVolume(RAIDVolume* volume) override {
    story.push_back("add " + volume->uuid());
    ThunderboltDevice::addRAIDVolume(volume);
  }
  void removeRAIDVolume(RAIDVolume* volume) override {
    story.push_back("remove " + volume->uuid());
    ThunderboltDevice::removeRAIDVolume(volume);
  }

  std::vector<std::string> story;
};

class DeviceRefresh : public DeviceTest {
 protected:
  // The bring-up finds disks and no sets.
  void SetUp() override {
    two.complete().addDisks({1, 2});
    _bridge = two.bridge();
    _device = new WatchedDevice(UID);
    _device->ref();
    log().clear();
  }
  void TearDown() override {
    TestSupport::settleVolumes(*_device);
    _device->deref();
    // What the searches keep of the bridge has a test of its own.
    expectKept(_bridge, kept(_bridge));
    DeviceTest::TearDown();
  }

  EntryID addSet(const std::string& uuid) {
    const EntryID member = addBareMember(two.port(1), "M-" + uuid);
    return addBareSet(member, uuid, {"M-" + uuid});
  }
  std::vector<std::string> filed() const {
    std::vector<std::string> uuids;
    for (const RAIDVolume* volume : _device->raidVolumes())
      uuids.push_back(volume->uuid());
    return uuids;
  }
  static LogLine noBridge() {
    return message("ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object");
  }

  WatchedDevice* _device = nullptr;
  EntryID _bridge = 0;
};

TEST_F(DeviceRefresh, FilesANewSetWithTheHostsReferenceAlone) {
  addSet("A");
  _device->refresh();
  EXPECT_THAT(filed(), ElementsAre("A"));
  EXPECT_EQ(1, _device->raidVolumes()[0]->references());
  EXPECT_THAT(_device->story, ElementsAre("add A"));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(DeviceRefresh, LeavesTheReferencesOfAKnownSetAsTheyWere) {
  const EntryID set = addSet("A");
  _device->refresh();
  RAIDVolume* volume = _device->raidVolumes()[0];
  MemoryRegistry::setProperty(set, "AppleRAID-SetStatus", "Degraded");
  for (int i = 0; i < 5; ++i)
    _device->refresh();
  EXPECT_THAT(_device->raidVolumes(), ElementsAre(volume));
  EXPECT_EQ(1, volume->references());
  EXPECT_EQ(VolumeDegraded, volume->state());
  EXPECT_THAT(_device->story, ElementsAre("add A"));
}

// The search takes one for every encounter, the refresh gives one back for every volume.
TEST_F(DeviceRefresh, LeavesOneReferenceOnAKnownSetForEachFurtherMemberItHangsUnder) {
  two.addSet({"SET", {1, 2}});
  _device->refresh();
  RAIDVolume* volume = _device->raidVolumes()[0];
  EXPECT_EQ(1, volume->references());
  _device->refresh();
  EXPECT_EQ(2, volume->references());
  _device->refresh();
  EXPECT_EQ(3, volume->references());
  two.pullDisk(2);
  _device->refresh();
  EXPECT_EQ(3, volume->references());
}

TEST_F(DeviceRefresh, FilesOneOfTheVolumesOfASetThatItMeetsTwice) {
  two.addSet({"SET", {1, 2}});
  _device->refresh();
  EXPECT_THAT(_device->story, ElementsAre("add SET"));
  ASSERT_THAT(_device->raidVolumes(), SizeIs(1));
  EXPECT_EQ(1, _device->raidVolumes()[0]->references());
}

TEST_F(DeviceRefresh, RemovesSetsThatAreGoneInAscendingOrderOfTheirUUIDs) {
  std::map<std::string, EntryID> sets;
  for (const char* uuid : {"C", "A", "D", "B"})
    sets[uuid] = addSet(uuid);
  _device->refresh();
  EXPECT_THAT(filed(), ElementsAre("A", "B", "C", "D"));
  RAIDVolume* kept = _device->raidVolumes()[0];
  kept->ref();
  _device->story.clear();
  for (const char* uuid : {"D", "A", "C"})
    MemoryRegistry::terminate(sets[uuid]);
  _device->refresh();
  EXPECT_THAT(_device->story, ElementsAre("remove A", "remove C", "remove D"));
  EXPECT_THAT(filed(), ElementsAre("B"));
  EXPECT_EQ(1, kept->references());  // one fewer: the host's
  kept->deref();
}

TEST_F(DeviceRefresh, WithNoSetBeneathTheBridgeRemovesEveryVolume) {
  const EntryID a = addSet("A");
  const EntryID b = addSet("B");
  _device->refresh();
  _device->story.clear();
  MemoryRegistry::terminate(b);
  MemoryRegistry::terminate(a);
  _device->refresh();
  EXPECT_THAT(_device->story, ElementsAre("remove A", "remove B"));
  EXPECT_THAT(filed(), IsEmpty());
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(DeviceRefresh, RemovesOnlyAfterItHasAdded) {
  const EntryID gone = addSet("A");
  _device->refresh();
  _device->story.clear();
  MemoryRegistry::terminate(gone);
  addSet("B");
  _device->refresh();
  EXPECT_THAT(_device->story, ElementsAre("add B", "remove A"));
  EXPECT_THAT(filed(), ElementsAre("B"));
}

TEST_F(DeviceRefresh, ASetThatHasANewUUIDIsANewVolume) {
  const EntryID set = addSet("A");
  _device->refresh();
  MemoryRegistry::setProperty(set, "AppleRAID-SetUUID", "B");
  _device->refresh();
  EXPECT_THAT(filed(), ElementsAre("B"));
}

TEST_F(DeviceRefresh, OfADeviceWithoutABridgeLogsOnceACallAndLeavesNoVolumes) {
  addSet("A");
  _device->refresh();
  RAIDVolume* volume = _device->raidVolumes()[0];
  const HeldDevice unknown(UID + 1);
  unknown->addRAIDVolume(volume);
  log().clear();
  unknown->refresh();
  EXPECT_THAT(log().lines(), ElementsAre(noBridge()));
  EXPECT_THAT(unknown->raidVolumes(), IsEmpty());
  EXPECT_EQ(1, volume->references());
  unknown->refresh();
  EXPECT_THAT(log().lines(), ElementsAre(noBridge(), noBridge()));
}

TEST_F(DeviceRefresh, AfterTheEnclosureHasGoneRemovesEveryVolume) {
  addSet("A");
  _device->refresh();
  two.unplug();
  _device->refresh();
  EXPECT_THAT(log().lines(), ElementsAre(noBridge()));
  EXPECT_THAT(filed(), IsEmpty());
}

TEST_F(DeviceRefresh, AfterAFailedWalkRemovesEveryVolume) {
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    if (filed().empty()) addSet(row.name);
    _device->refresh();
    ASSERT_THAT(filed(), testing::Not(IsEmpty()));
    fail(Operation::IORegistryEntryCreateIterator, 1, row.failure);
    _device->refresh();
    EXPECT_THAT(filed(), IsEmpty());
    EXPECT_THAT(log().take(),
                ElementsAre(message(
                    "ThunderboltDevice::findRAIDs - couldn't create iterator on PCI Bridge")));
  }
}

TEST_F(DeviceRefresh, KeepsAVolumeWhoseOwnReadFails) {
  addSet("A");
  _device->refresh();
  RAIDVolume* volume = _device->raidVolumes()[0];
  fail(Operation::IORegistryEntryFromPath, 2);
  _device->refresh();
  EXPECT_THAT(_device->raidVolumes(), ElementsAre(volume));
  EXPECT_EQ(VolumeFailed, volume->state());
  EXPECT_EQ(1, volume->references());
}

TEST_F(DeviceRefresh, DoesNotLookForTheSwitchAgain) {
  const auto matches = MemoryRegistry::calls(Operation::IOServiceGetMatchingService);
  MemoryRegistry::terminate(two.switchEntry());
  addSet("A");
  _device->refresh();
  EXPECT_THAT(filed(), ElementsAre("A"));
  EXPECT_EQ(matches, MemoryRegistry::calls(Operation::IOServiceGetMatchingService));
}

TEST_F(DeviceRefresh, KeepsTheBridgeForTheSearchTheVolumesAndTheMembers) {
  two.addSet({"SET", {1, 2}});
  std::uint64_t expected = 2;  // found; searched in vain
  EXPECT_EQ(expected, kept(two.bridge()));
  _device->refresh();
  expected += 1 + keptAtFirstSight(2);
  EXPECT_EQ(expected, kept(two.bridge()));
  _device->refresh();
  expected += 1 + keptAtLaterSight(2, 2);
  EXPECT_EQ(expected, kept(two.bridge()));
  two.pullDisk(1);
  _device->refresh();
  expected += 1 + keptAtLaterSight(1, 2);  // one parent is left, both members are listed
  EXPECT_EQ(expected, kept(two.bridge()));
}

}  // namespace
}  // namespace RAIDMonitoring
