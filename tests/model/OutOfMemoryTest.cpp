#include <gmock/gmock.h>

#include <memory>

#include "model/AppleRAIDMember.h"
#include "tests/model/BareHost.h"
#include "tests/model/ModelFixture.h"
#include "tests/support/FailingMemory.h"

// Every operation that allocates, failing at every one of its allocations: the exception arrives,
// and nothing is held that nobody owns. A program of its own, because it replaces operator new.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::failEachAllocation;
using TestSupport::liveAllocations;

class OutOfMemoryTest : public ModelFixture {
 protected:
  OutOfMemoryTest() : set(addSet(bridge(), {"SET", {"A", "B", "ABSENT"}})) {
    addMember(enclosure().port(1), "A");
    addMember(enclosure().port(2), "B");
    makeVolume("SET");  // so that the registry and the log have made what they make but once
    expectLookUps(1);
    log().clear();
  }

  // What the failed attempts leave on the bridge is what they looked up, and nothing else is left.
  void expectNothingHeldButTheBridge() {
    const auto accounts = MemoryRegistry::accounts();
    EXPECT_EQ(0U, accounts.iterators);
    EXPECT_EQ(0U, accounts.values);
    for (const auto& kept : accounts.entries)
      EXPECT_EQ(bridge(), kept.id);
  }

  EntryID set;
};

TEST_F(OutOfMemoryTest, AVolumeThatIsNotFinishedLeavesNothingBehind) {
  log().take();
  const std::size_t before = liveAllocations();
  keptBy([&] {
    const auto failures = failEachAllocation([&] { makeVolume("SET"); },
                                             [&](bool threw) {
                                               log().take();
                                               EXPECT_EQ(before, liveAllocations());
                                               EXPECT_TRUE(threw);
                                               expectNothingHeldButTheBridge();
                                             });
    EXPECT_LT(10U, failures);
  });
}

TEST_F(OutOfMemoryTest, AMemberThatIsNotFinishedLeavesNothingBehind) {
  const auto volume = makeVolume("SET");
  expectLookUps(1);
  const auto failures = failEachAllocation(
      [&] {
        const Pelago::Reference<AppleRAIDMember> member(new AppleRAIDMember(volume.get(), "A"));
      },
      [&](bool threw) {
        EXPECT_TRUE(threw);
        expectNothingHeldButTheBridge();
      });
  EXPECT_LT(2U, failures);
}

TEST_F(OutOfMemoryTest, AVolumeWhoseRefreshFailsKeepsWhatItHasWithOneReferenceEach) {
  const auto volume = makeVolume("SET");
  const auto members = volume->members();
  keptBy([&] {
    failEachAllocation([&] { volume->refresh(); },
                       [&](bool threw) {
                         EXPECT_TRUE(threw);
                         expectNothingHeldButTheBridge();
                         EXPECT_EQ(members, volume->members());
                         for (auto* member : volume->members())
                           EXPECT_EQ(1, member->references());
                       });
  });
  EXPECT_EQ(members, volume->members());
  EXPECT_EQ(VolumeOnline, volume->state());
  expectLookUps(1);
}

TEST_F(OutOfMemoryTest, ARefreshWithNewMembersFilesThemOnceItSucceeds) {
  setMembers(set, {});
  const auto volume = makeVolume("SET");
  expectLookUps(1);
  setMembers(set, {"B", "A"});
  keptBy([&] {
    failEachAllocation([&] { volume->refresh(); },
                       [&](bool threw) {
                         EXPECT_TRUE(threw);
                         expectNothingHeldButTheBridge();
                         for (auto* member : volume->members())
                           EXPECT_EQ(1, member->references());
                       });
  });
  EXPECT_THAT(uuidsOf(volume->members()), ElementsAre("A", "B"));
  for (auto* member : volume->members())
    EXPECT_EQ(1, member->references());
}

TEST_F(OutOfMemoryTest, FindingMembersGivesBackThoseThatItHasFound) {
  const auto volume = makeVolume("SET");
  setMembers(set, {"A", "NEW", "A", "B"});
  const auto entry = handleOn(set);
  std::vector<RAIDMember*> found;
  expectLookUps(1);
  keptBy([&] {
    failEachAllocation([&] { found = volume->findMembers(entry.get()); },
                       [&](bool threw) {
                         EXPECT_TRUE(threw);
                         for (auto* member : volume->members())
                           EXPECT_EQ(1, member->references());
                       });
  });
  EXPECT_THAT(uuidsOf(found), ElementsAre("A", "NEW", "A", "B"));
  for (auto* member : found)
    member->deref();
}

TEST_F(OutOfMemoryTest, AVolumeThatCannotBeFiledIsNotReferenced) {
  const Pelago::Reference<BareHost> host(new BareHost);
  const auto volume = makeVolume("SET");
  expectLookUps(1);
  const auto failures = failEachAllocation([&] { host->addRAIDVolume(volume.get()); },
                                           [&](bool threw) {
                                             EXPECT_TRUE(threw);
                                             EXPECT_EQ(1, volume->references());
                                             EXPECT_THAT(host->raidVolumes(), IsEmpty());
                                           });
  EXPECT_LT(0U, failures);
  EXPECT_EQ(2, volume->references());
  host->removeRAIDVolume(volume.get());
}

TEST_F(OutOfMemoryTest, AHostGivesBackAllItsMemory) {
  const std::size_t before = liveAllocations();
  {
    const Pelago::Reference<BareHost> host(new BareHost);
    EXPECT_LT(before, liveAllocations());
  }
  EXPECT_EQ(before, liveAllocations());
}

TEST_F(OutOfMemoryTest, AVolumeWithMembersGivesBackAllItsMemory) {
  log().take();
  const std::size_t before = liveAllocations();
  makeVolume("SET");
  log().take();
  EXPECT_EQ(before, liveAllocations());
  expectLookUps(1);
}

}  // namespace
}  // namespace ModelTest
