#include <gmock/gmock.h>

#include "tests/model/BareHost.h"
#include "tests/model/ModelFixture.h"
#include "tests/model/StubMember.h"

// How members are filed, taken off and left, without a registry.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;
using StubReference = Pelago::Reference<StubMember>;

class RAIDVolumeMembersTest : public TestSupport::RegistryFixture {
 protected:
  static StubReference makeMember(const std::string& uuid) {
    return StubReference(new StubMember(uuid));
  }

  // A member that only the volume keeps, and that tells of its end.
  void addTelling(const std::string& uuid) {
    auto* member = new StubMember(uuid);
    member->onEnd([this](const StubMember& ended) { ends.push_back(ended.uuid()); });
    volume->addRAIDMember(member);
  }

  Pelago::Reference<BareHost> host{new BareHost};
  VolumeReference volume{new RAIDVolume(host.get(), "SET")};
  std::vector<std::string> ends;
};

TEST_F(RAIDVolumeMembersTest, AVolumeWithoutMembersYieldsAnEmptyVector) {
  EXPECT_THAT(volume->members(), IsEmpty());
}

TEST_F(RAIDVolumeMembersTest, MembersComeInAscendingOrderOfTheirUUIDsAndAreNotReferenced) {
  const auto b = makeMember("b");
  const auto capital = makeMember("Z");
  const auto a = makeMember("a");
  for (auto* member : {b.get(), capital.get(), a.get()})
    volume->addRAIDMember(member);
  EXPECT_THAT(volume->members(), ElementsAre(capital.get(), a.get(), b.get()));
  EXPECT_EQ(2, a->references());
}

TEST_F(RAIDVolumeMembersTest, AddingTakesOneReference) {
  const auto member = makeMember("M");
  volume->addRAIDMember(member.get());
  EXPECT_EQ(2, member->references());
  volume->addRAIDMember(member.get());
  EXPECT_EQ(2, member->references());
}

TEST_F(RAIDVolumeMembersTest, AddingAnotherMemberWithAFiledUUIDDoesNothing) {
  const auto first = makeMember("M");
  const auto second = makeMember("M");
  volume->addRAIDMember(first.get());
  volume->addRAIDMember(second.get());
  EXPECT_THAT(volume->members(), ElementsAre(first.get()));
  EXPECT_EQ(1, second->references());
}

TEST_F(RAIDVolumeMembersTest, RemovingUnfilesAndGivesTheReferenceBack) {
  const auto a = makeMember("A");
  const auto b = makeMember("B");
  volume->addRAIDMember(a.get());
  volume->addRAIDMember(b.get());
  volume->removeRAIDMember(a.get());
  EXPECT_THAT(volume->members(), ElementsAre(b.get()));
  EXPECT_EQ(1, a->references());
  EXPECT_EQ(2, b->references());
}

TEST_F(RAIDVolumeMembersTest, RemovingAMemberThatIsNotFiledDoesNothingNotEvenADeref) {
  const auto member = makeMember("M");
  volume->removeRAIDMember(member.get());
  EXPECT_EQ(1, member->references());
}

TEST_F(RAIDVolumeMembersTest,
       RemovingAnotherMemberWithTheUUIDErasesTheFiledOneAndDropsTheGivenOnes) {
  const auto filed = makeMember("M");
  const auto given = makeMember("M");
  given->ref();
  volume->addRAIDMember(filed.get());
  volume->removeRAIDMember(given.get());
  EXPECT_THAT(volume->members(), IsEmpty());
  EXPECT_EQ(2, filed->references());  // the volume's is never given back
  EXPECT_EQ(1, given->references());
  filed->deref();
}

TEST_F(RAIDVolumeMembersTest, AMemberIsOffTheListWhenItEnds) {
  std::vector<RAIDMember*> left;
  auto* member = new StubMember("M");
  member->onEnd([&](const StubMember&) { left = volume->members(); });
  const auto other = makeMember("N");
  volume->addRAIDMember(member);
  volume->addRAIDMember(other.get());
  volume->removeRAIDMember(member);
  EXPECT_THAT(left, ElementsAre(other.get()));
}

TEST_F(RAIDVolumeMembersTest, AVolumeThatEndsRemovesItsMembersInDescendingOrder) {
  for (const char* uuid : {"B", "A", "D", "C"})
    addTelling(uuid);
  volume.reset();
  EXPECT_THAT(ends, ElementsAre("D", "C", "B", "A"));
}

TEST_F(RAIDVolumeMembersTest, AMemberThatSomebodyElseKeepsOutlivesTheVolumeWithTheirReference) {
  const auto member = makeMember("M");
  volume->addRAIDMember(member.get());
  volume.reset();
  EXPECT_EQ(1, member->references());
}

TEST_F(RAIDVolumeMembersTest, AVolumeThatEndsDoesNotUnfileItselfFromItsHost) {
  host->addRAIDVolume(volume.get());
  volume.get()->deref();  // the host's
  volume.reset();
  EXPECT_EQ(1U, host->raidVolumes().size());
}

TEST_F(RAIDVolumeMembersTest, AVolumeTakesNoReferenceOnItsHostAndMayOutliveIt) {
  EXPECT_EQ(1, host->references());
  addTelling("M");
  host.reset();
  volume.reset();
  EXPECT_THAT(ends, ElementsAre("M"));
}

TEST_F(RAIDVolumeMembersTest, ANewVolumeHoldsNoReference) {
  const RAIDVolume fresh(host.get(), "OTHER");
  EXPECT_EQ(0, fresh.references());
  EXPECT_EQ("OTHER", fresh.uuid());
  EXPECT_EQ("", fresh.name());
  EXPECT_EQ(host.get(), fresh.host());
  EXPECT_THAT(fresh.members(), IsEmpty());
}

}  // namespace
}  // namespace ModelTest
