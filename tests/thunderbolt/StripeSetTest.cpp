#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/RAIDVolume.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using MemoryRegistry::Array;
using MemoryRegistry::Dictionary;
using MemoryRegistry::PropertyValue;
using TestSupport::addEntry;

// One set with one member and a media that names its boot devices.
class StripeSet : public DeviceTest {
 protected:
  void SetUp() override {
    two.complete().addDisk(1);
    _member = addBareMember(two.port(1), "M");
    addSet("Stripe");
  }

  void addSet(const std::string& level) {
    if (_set != 0) MemoryRegistry::terminate(_set);
    _set = addBareSet(_member, "SET", {"M"}, level);
    _media = addEntry(_set, "IOMedia", "Bare", "0");
  }
  void setBootDevices(PropertyValue devices) {
    MemoryRegistry::setProperty(_media, "IOBootDevice", std::move(devices));
  }
  void setBootPaths(const std::vector<std::string>& paths) {
    Array devices;
    for (const std::string& path : paths) {
      devices.emplace_back(Dictionary{{"IOBootDevicePath", path}});
    }
    setBootDevices(std::move(devices));
  }
  // The state that a device sees at its bring-up.
  RAIDVolumeState stateAtFirstSight() {
    const HeldDevice device(UID);
    return device->raidVolumes().at(0)->state();
  }
  void declareKept() {
    expectKept(two.bridge(), kept(two.bridge()));
    expectKept(_media, kept(_media));
  }

  EntryID _member = 0;
  EntryID _set = 0;
  EntryID _media = 0;
};

TEST_F(StripeSet, SpansDevicesWhenItsBootPathsNameDifferentControllers) {
  struct Row {
    const char* what;
    std::vector<std::string> paths;
    RAIDVolumeState state;
  };
  const std::vector<Row> rows = {
      {"no path at all", {}, VolumeOnline},
      {"one path", {"IODeviceTree:/PCI0@0/pci1bAA,1/PRT0@0"}, VolumeOnline},
      {"two paths, one controller",
       {"IODeviceTree:/PCI0@0/pci1bAA,1/PRT0@0", "IODeviceTree:/PCI0@0/pci1bAA,1/PRT1@1"},
       VolumeOnline},
      {"two paths, two controllers",
       {"IODeviceTree:/PCI0@0/pci1bAA,1/PRT0@0", "IODeviceTree:/PCI0@0/pci1bBB,1/PRT0@0"},
       VolumeCrossDevice},
      {"the third path differs", {"/pci1bAA,1", "/pci1bAA,1", "/pci1bBB,1"}, VolumeCrossDevice},
      {"the second differs, the third does not",
       {"/pci1bAA,1", "/pci1bBB,1", "/pci1bAA,1"},
       VolumeCrossDevice},
      {"two different ones in one path", {"/pci1bAA,1/x/pci1bBB,1"}, VolumeCrossDevice},
      {"the same twice in one path", {"/pci1bAA,1/x/pci1bAA,1"}, VolumeOnline},
      {"different locations", {"/pci1bAA,1@0", "/pci1bAA,1@1"}, VolumeCrossDevice},
      {"different letter case behind the prefix", {"/pci1bAA", "/pci1baa"}, VolumeCrossDevice},
      {"the prefix alone", {"/pci1b", "/pci1b"}, VolumeOnline},
      {"the prefix alone and more", {"/pci1b", "/pci1b0"}, VolumeCrossDevice},
      {"another letter case of the prefix", {"/PCI1BAA", "/Pci1bBB"}, VolumeOnline},
      {"the prefix inside a component", {"/xpci1bAA", "/xpci1bBB"}, VolumeOnline},
      {"a shorter prefix", {"/pci1,AA", "/pci1,BB"}, VolumeOnline},
      {"other controllers", {"/pci8086,1", "/pci8086,2"}, VolumeOnline},
      {"one with the prefix, one without", {"/pci1bAA", "/pci8086,2"}, VolumeOnline},
      {"nothing but the component", {"pci1bAA", "pci1bBB"}, VolumeCrossDevice},
      {"empty paths", {"", ""}, VolumeOnline},
      {"separators only", {"//", "/"}, VolumeOnline},
      {"a separator behind", {"/pci1bAA/", "/pci1bAA"}, VolumeOnline},
  };
  for (const Row& row : rows) {
    setBootPaths(row.paths);
    EXPECT_EQ(row.state, stateAtFirstSight()) << row.what;
  }
  declareKept();
}

TEST_F(StripeSet, IsReadWithWhatItsBootDevicesHaveOfUse) {
  const Dictionary one{{"IOBootDevicePath", "/pci1bAA"}};
  const Dictionary other{{"IOBootDevicePath", "/pci1bBB"}};
  struct Row {
    const char* what;
    PropertyValue devices;
    RAIDVolumeState state;
  };
  const std::vector<Row> rows = {
      {"no array", PropertyValue("/pci1bAA"), VolumeOnline},
      {"a dictionary", PropertyValue(one), VolumeOnline},
      {"no dictionary in the array", Array{"/pci1bAA", "/pci1bBB", 5, Array{one, other}},
       VolumeOnline},
      {"a dictionary without a path", Array{one, Dictionary{{"IOBootDeviceSize", 5}}},
       VolumeOnline},
      {"a path that is no string", Array{one, Dictionary{{"IOBootDevicePath", 5}}}, VolumeOnline},
      {"useful ones around a useless one", Array{one, true, other}, VolumeCrossDevice},
      {"useful ones around an empty dictionary", Array{one, Dictionary{}, other},
       VolumeCrossDevice},
  };
  for (const Row& row : rows) {
    setBootDevices(row.devices);
    EXPECT_EQ(row.state, stateAtFirstSight()) << row.what;
  }
  declareKept();
}

TEST_F(StripeSet, WithoutBootDevicesHasTheStateThatItSays) {
  EXPECT_EQ(VolumeOnline, stateAtFirstSight());
  declareKept();
}

TEST_F(StripeSet, TheScanGoesOnBehindTheFirstDifference) {
  setBootPaths({"/pci1bAA", "/pci1bBB", "/pci1bCC", "/pci1bDD"});
  EXPECT_EQ(VolumeCrossDevice, stateAtFirstSight());
  EXPECT_EQ(3U, MemoryRegistry::calls(Operation::CFStringCompare));
  EXPECT_EQ(8U, MemoryRegistry::calls(Operation::CFStringHasPrefix));
  declareKept();
}

TEST_F(StripeSet, IsLookedAtThroughItsFirstChildOnly) {
  const EntryID second = addEntry(_set, "IOMedia", "Second", "1");
  MemoryRegistry::setProperty(second, "IOBootDevice",
                              Array{Dictionary{{"IOBootDevicePath", "/pci1bAA"}},
                                    Dictionary{{"IOBootDevicePath", "/pci1bBB"}}});
  EXPECT_EQ(VolumeOnline, stateAtFirstSight());
  EXPECT_EQ(0U, kept(second));
  declareKept();
}

TEST_F(StripeSet, WithNoChildHasTheStateThatItSays) {
  MemoryRegistry::terminate(_media);
  EXPECT_EQ(VolumeOnline, stateAtFirstSight());
  EXPECT_EQ(4U, log().lines().size());  // those of the bring-up
  declareKept();
}

TEST_F(StripeSet, WithAFailedLookUpOfItsChildHasTheStateThatItSays) {
  setBootPaths({"/pci1bAA", "/pci1bBB"});
  for (const FailureRow& row : bothFailures) {
    fail(Operation::IORegistryEntryGetChildEntry, 1, row.failure);
    EXPECT_EQ(VolumeOnline, stateAtFirstSight()) << row.name;
  }
  EXPECT_EQ(0U, kept(_media));
  declareKept();
}

TEST_F(StripeSet, KeepsItsChildOnceForEachLook) {
  setBootPaths({"/pci1bAA", "/pci1bAA"});
  const HeldDevice device(UID);
  EXPECT_EQ(1U, kept(_media));
  device->refresh();
  device->refresh();
  EXPECT_EQ(3U, kept(_media));
  declareKept();
}

TEST_F(StripeSet, IsMarkedAnewAfterEveryRead) {
  setBootPaths({"/pci1bAA", "/pci1bBB"});
  const HeldDevice device(UID);
  const RAIDVolume* volume = device->raidVolumes().at(0);
  MemoryRegistry::setProperty(_set, "AppleRAID-SetStatus", "Degraded");
  device->refresh();
  EXPECT_EQ(VolumeCrossDevice, volume->state());
  setBootPaths({"/pci1bAA", "/pci1bAA"});
  device->refresh();
  EXPECT_EQ(VolumeDegraded, volume->state());
  declareKept();
}

TEST_F(StripeSet, CountsWithAClassDerivedFromAStripe) {
  MemoryRegistry::terminate(_set);
  MemoryRegistry::EntryDescription description;
  description.className = "ExampleStripeSet";
  description.inheritance = {"IORegistryEntry", "IOService",    "IOStorage",
                             "AppleRAIDMember", "AppleRAIDSet", "AppleRAIDStripeSet",
                             "ExampleStripeSet"};
  description.properties = {{"AppleRAID-SetUUID", "SET"}, {"AppleRAID-SetStatus", "Online"}};
  _set = MemoryRegistry::add(_member, std::move(description));
  _media = addEntry(_set, "IOMedia");
  setBootPaths({"/pci1bAA", "/pci1bBB"});
  EXPECT_EQ(VolumeCrossDevice, stateAtFirstSight());
  declareKept();
}

TEST_F(StripeSet, OfAnotherKindIsNeverMarked) {
  for (const char* level : {"Mirror", "Concat"}) {
    addSet(level);
    setBootPaths({"/pci1bAA", "/pci1bBB"});
    EXPECT_EQ(VolumeOnline, stateAtFirstSight()) << level;
    EXPECT_EQ(0U, kept(_media)) << level;
  }
  declareKept();
}

TEST_F(StripeSet, IsJudgedByItsClassAndNotByItsLevel) {
  addSet("Mirror");
  MemoryRegistry::setProperty(_set, "AppleRAID-LevelName", "Stripe");
  setBootPaths({"/pci1bAA", "/pci1bBB"});
  const HeldDevice device(UID);
  EXPECT_EQ(LevelStripe, device->raidVolumes().at(0)->level());
  EXPECT_EQ(VolumeOnline, device->raidVolumes().at(0)->state());
  declareKept();
}

TEST_F(StripeSet, AcrossTwoControllersOfAnEnclosureOfOneKindIsOnline) {
  five.complete().addDisks({3, 5}).addSet({"FIVE", {3, 5}, "Scratch", "Stripe"});
  two.unplug();
  const HeldDevice device(UID);
  EXPECT_EQ(VolumeOnline, device->raidVolumes().at(0)->state());
  EXPECT_EQ(2U, kept(five.setMedia("FIVE")));  // once beneath each member
  expectKept(five.setMedia("FIVE"), 2);
  expectKept(five.bridge(), 1 + 1 + keptAtFirstSight(2));
}

}  // namespace
}  // namespace RAIDMonitoring
