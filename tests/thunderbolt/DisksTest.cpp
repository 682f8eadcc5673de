#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/RAIDVolume.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::Contains;
using testing::ElementsAre;
using TestSupport::addEntry;
using TestSupport::addUnregistered;

// The stage that waits for disks never waits twice: it finds some at its one look, or it ends.
class Disks : public DeviceTest {
 protected:
  void SetUp() override { two.complete(); }

  std::vector<LogLine> foundBridge() const {
    return {lookingForPort(), lookingForBridge(), bridgeFound(two.bridgePath()), lookingForDisks()};
  }
  // The bring-up has ended: nothing is queued, and the stage kept its reference on the bridge.
  void expectEndedWithoutDisks(const HeldDevice& device) {
    EXPECT_EQ(0U, application().queuedEvents());
    EXPECT_TRUE(device->raidVolumes().empty());
    EXPECT_EQ(0U, MemoryRegistry::accounts().iterators);
    expectKept(two.bridge(), 2);
  }
  // Disks were found, and no sets: findRAIDs kept the bridge in the stage's place.
  void expectFoundWithoutSets() {
    EXPECT_EQ(0U, application().queuedEvents());
    expectKept(two.bridge(), 2);
  }
  static std::uint64_t searches() {
    return MemoryRegistry::calls(Operation::IORegistryEntryCreateIterator);
  }
};

TEST_F(Disks, ThatAreNotThereYetEndTheBringUpWithOneMessageAndNoVolumesEver) {
  const HeldDevice device(UID);
  EXPECT_EQ(foundBridge(), log().lines());
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  pump().turns(50);
  EXPECT_EQ(foundBridge(), log().lines());
  expectEndedWithoutDisks(device);
}

TEST_F(Disks, ThatComeLaterAreFoundByTheNextRefresh) {
  const HeldDevice device(UID);
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  device->refresh();
  EXPECT_EQ(1U, device->raidVolumes().size());
  expectKept(two.bridge(), 2 + 1 + keptAtFirstSight(2));
}

TEST_F(Disks, AreThereWhenAPartitionSchemeHasAClientBeneath) {
  two.addDisk(2);
  const HeldDevice device(UID);
  // Bridge, disks, the scheme, and the search for sets that follows: nothing else was walked.
  EXPECT_EQ(4U, searches());
  expectFoundWithoutSets();
}

TEST_F(Disks, AreSeenAtTheFirstSchemeWithAClient) {
  two.addDisks({1, 2});
  const HeldDevice device(UID);
  EXPECT_EQ(4U, searches());
  expectFoundWithoutSets();
}

TEST_F(Disks, CountWithAClientHoweverDeepBeneathTheScheme) {
  const EntryID scheme = addUnregistered(two.port(1), "IOGUIDPartitionScheme");
  addEntry(addEntry(addEntry(scheme, "IOMedia"), "IOService"), "IOMediaBSDClient");
  const HeldDevice device(UID);
  EXPECT_EQ(4U, searches());
  expectFoundWithoutSets();
}

TEST_F(Disks, DoNotCountWithAClientBesideTheScheme) {
  addEntry(two.port(1), "IOMediaBSDClient");
  addEntry(addUnregistered(two.port(1), "IOGUIDPartitionScheme"), "IOMedia");
  const HeldDevice device(UID);
  EXPECT_EQ(3U, searches());
  expectEndedWithoutDisks(device);
}

TEST_F(Disks, AreLookedForBeneathEveryScheme) {
  addUnregistered(two.port(1), "IOGUIDPartitionScheme");
  const EntryID second = addUnregistered(two.port(2), "IOPartitionScheme");
  addEntry(second, "IOMediaBSDClient");
  const HeldDevice device(UID);
  EXPECT_EQ(5U, searches());
  expectFoundWithoutSets();
}

TEST_F(Disks, EndBothWalksAtTheFirstClient) {
  const EntryID scheme = addUnregistered(two.port(1), "IOGUIDPartitionScheme");
  addEntry(scheme, "IOMediaBSDClient");
  const auto stepsOf = [this](EntryID parent) {
    for (int i = 0; i < 10; ++i)
      addEntry(parent, "IOMedia");
    const auto before = MemoryRegistry::calls(Operation::IOIteratorNext);
    const HeldDevice device(UID);
    // The search for sets that follows goes everywhere.
    return MemoryRegistry::calls(Operation::IOIteratorNext) - before -
           encountersBeneath(two.bridge()).size();
  };
  const auto steps = stepsOf(host.tunnel(1));  // behind everything that concerns the device
  EXPECT_EQ(steps, stepsOf(scheme));
  EXPECT_EQ(steps, stepsOf(two.port(2)));
  expectKept(two.bridge(), 6);
}

TEST_F(Disks, OutsideTheBridgeDoNotCount) {
  const EntryID elsewhere = addEntry(host.tunnel(1), "IOMedia");
  addEntry(addUnregistered(elsewhere, "IOGUIDPartitionScheme"), "IOMediaBSDClient");
  const HeldDevice device(UID);
  expectEndedWithoutDisks(device);
}

TEST_F(Disks, AreGivenUpWhenTheWalkBeneathTheBridgeFails) {
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  std::vector<LogLine> expected = foundBridge();
  expected.push_back(
      message("ThunderboltDevice::waitForDisks - couldn't create iterator on PCI Bridge"));
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    log().clear();
    fail(Operation::IORegistryEntryCreateIterator, 2, row.failure);
    const HeldDevice device(UID);
    EXPECT_EQ(expected, log().lines());
    expectEndedWithoutDisks(device);
  }
}

TEST_F(Disks, AreLookedForBeneathTheNextSchemeWhenOneCanNotBeWalked) {
  const LogLine failed =
      message("ThunderboltDevice::waitForDisks - Couldn't create iterator on Partition Scheme");
  two.addDisks({1, 2});
  for (const FailureRow& row : bothFailures) {
    SCOPED_TRACE(row.name);
    log().clear();
    fail(Operation::IORegistryEntryCreateIterator, 3, row.failure);
    const HeldDevice device(UID);
    EXPECT_EQ(1U, log().count(failed));
    expectFoundWithoutSets();
  }
}

TEST_F(Disks, AreNotThereWhenTheOnlySchemeCanNotBeWalked) {
  two.addDisk(1);
  fail(Operation::IORegistryEntryCreateIterator, 3);
  const HeldDevice device(UID);
  EXPECT_THAT(
      log().lines(),
      Contains(message(
          "ThunderboltDevice::waitForDisks - Couldn't create iterator on Partition Scheme")));
  expectEndedWithoutDisks(device);
}

// Files what it is told to and remembers the order.
class FilingDevice : public ThunderboltDevice {
 public:
  using ThunderboltDevice::ThunderboltDevice;

  void addRAIDVolume(RAIDVolume* volume) override {
    offered.push_back(volume);
    referencesWhenOffered.push_back(volume->references());
    ThunderboltDevice::addRAIDVolume(volume);
  }

  std::vector<RAIDVolume*> offered;
  std::vector<int> referencesWhenOffered;
};

TEST_F(Disks, FoundHandTheirVolumesToTheHostInTheOrderOfTheirAddresses) {
  auto* device = new FilingDevice(UID);  // finds no disks
  device->ref();
  two.addDisks({1, 2}).addSet({"SET", {1, 2}});
  device->disksFound();
  // The set was met beneath both members before the host knew it: two volumes, the first is filed.
  ASSERT_EQ(2U, device->offered.size());
  EXPECT_LT(device->offered[0], device->offered[1]);
  EXPECT_THAT(device->referencesWhenOffered, ElementsAre(1, 1));
  EXPECT_THAT(device->raidVolumes(), ElementsAre(device->offered[0]));
  EXPECT_EQ(1, device->offered[0]->references());
  TestSupport::settleVolumes(*device);
  device->deref();
  expectKept(two.bridge(), 2 + 1 + keptAtFirstSight(2));
}

}  // namespace
}  // namespace RAIDMonitoring
