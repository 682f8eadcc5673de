#include "tests/support/EnclosureBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/RegistryFixture.h"

namespace TestSupport {
namespace {

using testing::ElementsAre;

const std::string Tunnel =
    "IOService:/AppleACPIPlatformExpert/PCI0@0/AppleACPIPCI/PEG1@1,1/IOPP/UPSB@0/IOPP/DSB1@3/IOPP";

class Enclosure : public RegistryFixture {
 protected:
  static std::string path(EntryID entry) { return MemoryRegistry::path(entry); }

  HostTree host;
  EnclosureBuilder two{host, twoBay(2)};
  EnclosureBuilder five{host, fiveBay(5, 1)};
};

TEST_F(Enclosure, WithTwoBaysHasOneControllerBehindItsBridge) {
  two.complete().addDisk(2).addMember(2, "SET");
  EXPECT_EQ(Tunnel + "/UPS0@0/IOPP/pci-bridge@3", path(two.bridge()));
  EXPECT_EQ(path(two.bridge()), two.bridgePath());
  EXPECT_EQ(two.bridgePath() + "/IOPP/pci1b0a,10@0/AppleAHCI/PRT0@0", path(two.port(1)));
  EXPECT_EQ(two.bridgePath() +
                "/IOPP/pci1b0a,10@0/AppleAHCI/PRT1@1/IOAHCIDevice@0/AppleAHCIDiskDriver/"
                "IOAHCIBlockStorageDevice/IOBlockStorageDriver/EX4000A 2 Media/"
                "IOGUIDPartitionScheme/Untitled 2@2/AppleRAIDMember",
            path(two.member(2)));
}

TEST_F(Enclosure, WithFiveBaysHasItsControllersBehindThreeBridges) {
  five.complete();
  struct Row {
    int bay;
    const char* place;
  };
  constexpr Row rows[] = {
      {1, "9/IOPP/pci1b0a,10@0/AppleAHCI/PRT0@0"}, {2, "9/IOPP/pci1b0a,10@0/AppleAHCI/PRT1@1"},
      {3, "7/IOPP/pci1b0a,10@0/AppleAHCI/PRT0@0"}, {4, "7/IOPP/pci1b0a,10@0/AppleAHCI/PRT1@1"},
      {5, "5/IOPP/pci1b0a,10@0/AppleAHCI/PRT0@0"}, {6, "5/IOPP/pci1b0a,10@0/AppleAHCI/PRT1@1"}};
  for (const Row& row : rows) {
    EXPECT_EQ(five.bridgePath() + "/IOPP/pci-bridge@0/IOPP/pci-bridge@" + row.place,
              path(five.port(row.bay)));
  }
}

TEST_F(Enclosure, HangsASetUnderEveryMemberPresent) {
  two.complete().addDisks({1, 2}).addSet({"SET", {2, 1}});
  EXPECT_THAT(MemoryRegistry::parents(two.set("SET")), ElementsAre(two.member(2), two.member(1)));
  EXPECT_EQ(path(two.member(2)) + "/AppleRAIDMirrorSet/Projects@0", path(two.setMedia("SET")));
}

TEST_F(Enclosure, LosesADiskAndGetsItBackWithNewEntries) {
  two.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  const EntryID disk = two.disk(1);
  const EntryID member = two.member(1);
  two.pullDisk(1);
  EXPECT_FALSE(MemoryRegistry::contains(disk));
  EXPECT_FALSE(MemoryRegistry::contains(member));
  EXPECT_THAT(MemoryRegistry::parents(two.set("SET")), ElementsAre(two.member(2)));
  two.returnDisk(1, "Standby");
  EXPECT_NE(member, two.member(1));
  EXPECT_THAT(MemoryRegistry::parents(two.set("SET")), ElementsAre(two.member(2), two.member(1)));
}

TEST_F(Enclosure, LeavesNothingBehindWhenItIsUnplugged) {
  const std::size_t before = MemoryRegistry::entryCount();
  two.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  EXPECT_LT(before, MemoryRegistry::entryCount());
  two.unplug();
  EXPECT_EQ(before, MemoryRegistry::entryCount());
}

TEST_F(Enclosure, NamesItsDisksInTheDeviceTree) {
  two.complete();
  five.complete();
  EXPECT_EQ(
      "IODeviceTree:/PCI0@0/PEG1@1,1/UPSB@0/DSB1@3/UPS0@0/pci-bridge@3/pci1b0a,10@0/PRT1@1/PMP@0/"
      "@0:2",
      two.bootPath(2));
  EXPECT_EQ(
      "IODeviceTree:/PCI0@0/PEG1@1,1/UPSB@0/DSB2@4/UPS0@0/pci-bridge@3/pci-bridge@0/pci-bridge@7/"
      "pci1b0a,10@0/PRT0@0/PMP@0/@0:2",
      five.bootPath(3));
}

}  // namespace
}  // namespace TestSupport
