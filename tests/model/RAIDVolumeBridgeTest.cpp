#include <gmock/gmock.h>

#include "model/AppleRAIDMember.h"
#include "tests/model/BareHost.h"
#include "tests/model/ModelFixture.h"

// The mark of a set whose members are not all beneath its host's bridge.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::setProperty;
using TestSupport::addEntry;

class RAIDVolumeBridgeTest : public ModelFixture {
 protected:
  RAIDVolumeBridgeTest() : set(addSet(bridge(), {"SET", {"M"}})) {}

  // A member that is met beneath the bridge, but whose path, through its first parent, begins
  // elsewhere.
  EntryID addOutsideMember(const std::string& uuid, const std::string& status = "Online") {
    const EntryID member = addMember(elsewhere(), uuid, status);
    MemoryRegistry::attach(member, bridge());
    return member;
  }

  // The state of a volume made now.
  RAIDVolumeState stateOfNewVolume() {
    expectLookUps(1);
    return makeVolume("SET")->state();
  }

  EntryID set;
};

TEST_F(RAIDVolumeBridgeTest, ANewMemberOutsideTheBridgesPathMarksTheVolume) {
  addOutsideMember("M");
  EXPECT_EQ(VolumeCrossDevice, stateOfNewVolume());
}

TEST_F(RAIDVolumeBridgeTest, ANewMemberBeneathTheBridgesPathDoesNot) {
  addMember(enclosure().port(1), "M");
  EXPECT_EQ(VolumeOnline, stateOfNewVolume());
}

TEST_F(RAIDVolumeBridgeTest, OneOutsideAmongSeveralIsEnoughWhereverItIsListed) {
  addMember(bridge(), "A");
  addOutsideMember("M");
  addMember(bridge(), "Z");
  for (const auto& list :
       std::vector<std::vector<std::string>>{{"A", "M", "Z"}, {"M", "A", "Z"}, {"A", "Z", "M"}}) {
    setMembers(set, list);
    EXPECT_EQ(VolumeCrossDevice, stateOfNewVolume());
  }
}

TEST_F(RAIDVolumeBridgeTest, TheMarkOverridesWhateverStatusWasRead) {
  addOutsideMember("M");
  for (const char* status :
       {"Failed", "Terminating", "Initializing", "Online", "Degraded", "Offline", "Other"}) {
    setProperty(set, "AppleRAID-SetStatus", status);
    EXPECT_EQ(VolumeCrossDevice, stateOfNewVolume()) << status;
  }
}

TEST_F(RAIDVolumeBridgeTest, EveryStateOfZeroOrMoreIsTestedAndNoNegativeOne) {
  const EntryID member = addOutsideMember("M");
  const struct {
    const char* status;
    RAIDVolumeState state;
  } rows[] = {{"Offline", VolumeCrossDevice},  // 0
              {"Standby", VolumeCrossDevice},
              {"Online", VolumeCrossDevice},
              {"Failed", VolumeCrossDevice},
              {"Rebuilding", VolumeOnline}};  // stays MemberUnknown
  for (const auto& row : rows) {
    setProperty(member, "AppleRAID-MemberStatus", row.status);
    EXPECT_EQ(row.state, stateOfNewVolume()) << row.status;
  }
  MemoryRegistry::terminate(member);
  EXPECT_EQ(VolumeOnline, stateOfNewVolume()) << "not found";
}

TEST_F(RAIDVolumeBridgeTest, ThePathsAreComparedCharacterByCharacterAndNotByComponent) {
  const EntryID neighbour = addEntry(TestSupport::behindBridge(enclosure().upstreamBridge()),
                                     "IOPCIDevice", "pci-bridge", "3F");
  ASSERT_EQ(enclosure().bridgePath() + "F", MemoryRegistry::path(neighbour));
  MemoryRegistry::attach(addMember(neighbour, "M"), bridge());
  EXPECT_EQ(VolumeOnline, stateOfNewVolume());
}

TEST_F(RAIDVolumeBridgeTest, APathShorterThanTheBridgesIsOutside) {
  const EntryID above = addMember(enclosure().upstreamBridge(), "M");
  MemoryRegistry::attach(above, bridge());
  ASSERT_LT(MemoryRegistry::path(above).size(), enclosure().bridgePath().size());
  EXPECT_EQ(VolumeCrossDevice, stateOfNewVolume());
}

TEST_F(RAIDVolumeBridgeTest, AnEmptyPathIsOutside) {
  addMember(bridge(), "M");  // no port above it that could stand in
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryGetPath, 1,
                           MemoryRegistry::Repeat::Once);
  EXPECT_EQ(VolumeCrossDevice, stateOfNewVolume());
}

TEST_F(RAIDVolumeBridgeTest, ThePathOfThePortThatStandsInIsTested) {
  addMember(enclosure().port(1), "M");
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryGetPath, 1,
                           MemoryRegistry::Repeat::Once);
  EXPECT_EQ(VolumeOnline, stateOfNewVolume());
}

TEST_F(RAIDVolumeBridgeTest, TheNextPassReadsTheStatusAgainAndTheMarkIsGone) {
  addOutsideMember("M");
  const auto volume = makeVolume("SET");
  ASSERT_EQ(VolumeCrossDevice, volume->state());
  volume->refresh();
  EXPECT_EQ(VolumeOnline, volume->state());
  expectLookUps(3);
}

TEST_F(RAIDVolumeBridgeTest, TheMarkStaysWhileTheStatusIsNoneOfTheSix) {
  addOutsideMember("M");
  const auto volume = makeVolume("SET");
  setProperty(set, "AppleRAID-SetStatus", "Rebuilding");
  volume->refresh();
  EXPECT_EQ(VolumeCrossDevice, volume->state());
  MemoryRegistry::removeProperty(set, "AppleRAID-SetStatus");
  volume->refresh();
  EXPECT_EQ(VolumeCrossDevice, volume->state());
  expectLookUps(5);
}

TEST_F(RAIDVolumeBridgeTest, AMemberOnFileIsNeverTestedAgain) {
  const EntryID inside = addMember(bridge(), "M");
  const auto volume = makeVolume("SET");
  MemoryRegistry::terminate(inside);
  const EntryID outside = addOutsideMember("M");
  volume->refresh();
  EXPECT_EQ(VolumeOnline, volume->state());
  ASSERT_EQ(1U, volume->members().size());
  EXPECT_EQ(MemoryRegistry::path(outside),
            static_cast<AppleRAIDMember*>(volume->members()[0])->registryPath());
  expectLookUps(3);
}

TEST_F(RAIDVolumeBridgeTest, AMemberThatWasMissingWhenItWasNewIsNotTestedLater) {
  const auto volume = makeVolume("SET");
  addOutsideMember("M");
  volume->refresh();
  EXPECT_EQ(MemberOnline, volume->members().at(0)->state());
  EXPECT_EQ(VolumeOnline, volume->state());
  expectLookUps(3);
}

TEST_F(RAIDVolumeBridgeTest, AnotherNewMemberOutsideMarksTheVolumeInALaterPass) {
  addMember(bridge(), "M");
  const auto volume = makeVolume("SET");
  ASSERT_EQ(VolumeOnline, volume->state());
  addOutsideMember("N");
  setMembers(set, {"M", "N"});
  volume->refresh();
  EXPECT_EQ(VolumeCrossDevice, volume->state());
  volume->refresh();
  EXPECT_EQ(VolumeOnline, volume->state());
  expectLookUps(1 + 2 + 3);
}

TEST_F(RAIDVolumeBridgeTest, AMemberThatWasTakenOffAndIsListedAgainIsNewAndTestedAgain) {
  addOutsideMember("M");
  const auto volume = makeVolume("SET");
  setMembers(set, {});
  volume->refresh();
  ASSERT_EQ(VolumeOnline, volume->state());
  setMembers(set, {"M"});
  volume->refresh();
  EXPECT_EQ(VolumeCrossDevice, volume->state());
  expectLookUps(3);
}

TEST_F(RAIDVolumeBridgeTest, OnAHostWithoutABridgePathNoMemberMarksTheVolume) {
  addOutsideMember("M");
  const Pelago::Reference<BareHost> host(new BareHost);
  const VolumeReference volume(new RAIDVolume(host.get(), "SET"));
  volume->setState(VolumeOnline);
  for (auto* member : volume->findMembers(handleOn(set).get()))
    member->deref();
  EXPECT_EQ(VolumeOnline, volume->state());
}

}  // namespace
}  // namespace ModelTest
