// What is known of a volume's disks, and the words for it.

#include "application/text/TextDisks.h"

#include <gtest/gtest.h>

#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Members = std::vector<Program::MemberSnapshot>;
using Kind = Program::VolumeEvent::Kind;

const Program::MemberSnapshot one{"11111111-A", MemberOnline, "", 1};
const Program::MemberSnapshot two{"22222222-B", MemberOnline, "", 2};

Program::MemberSnapshot in(Program::MemberSnapshot member, MemberState state,
                           std::optional<int> slot) {
  member.state = state;
  member.slot = slot;
  return member;
}

class TextDisksTest : public testing::Test {
 protected:
  std::string after(Kind kind, const Members& members, std::uint64_t enclosure = 7) {
    return Program::disksText(bays.learn(
        {kind, volumeNamed("Projects", VolumeOnline, members), enclosureOf(2, enclosure)}));
  }

  Program::KnownBays bays;
};

TEST_F(TextDisksTest, WhereAllIsWellTheBaysSuffice) {
  EXPECT_EQ("bays 1 2", after(Kind::Appeared, {two, one}));
  EXPECT_EQ("bays 1 2", after(Kind::Updated, {two, one}));
  EXPECT_EQ("bay 1", after(Kind::Appeared, {one}));
  EXPECT_EQ("no disks", after(Kind::Appeared, {}));
}

TEST_F(TextDisksTest, ADiskThatIsNotOnlineStandsBeforeTheOthers) {
  EXPECT_EQ("bay 2: failed; bay 1: online", after(Kind::Appeared, {one, in(two, MemberFailed, 2)}));
}

TEST_F(TextDisksTest, AChangeNamesTheBay) {
  after(Kind::Appeared, {one, two});
  EXPECT_EQ("bay 2: failed; bay 1: online", after(Kind::Updated, {one, in(two, MemberFailed, 2)}));
  EXPECT_EQ("bay 2: standby; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberStandby, 2)}));
  EXPECT_EQ("bay 2: online; bay 1: online", after(Kind::Updated, {one, two}));
}

TEST_F(TextDisksTest, WhatHasChangedStandsBeforeWhatHasNot) {
  after(Kind::Appeared, {in(one, MemberFailed, 1), two});
  EXPECT_EQ("bay 2: absent; bay 1: failed",
            after(Kind::Updated, {in(one, MemberFailed, 1), in(two, MemberNotFound, 2)}));
}

TEST_F(TextDisksTest, ADiskThatIsGoneHasTheBayThatItHadLast) {
  after(Kind::Appeared, {one, two});
  const Members members = {one, in(two, MemberNotFound, -1)};
  EXPECT_EQ("bay 2, was: absent; bay 1: online", after(Kind::Updated, members));
  EXPECT_EQ("bay 2, was: absent; bay 1: online", after(Kind::Updated, members));
  EXPECT_EQ("bay 2, was: absent; bay 1, was: online",
            after(Kind::Disappeared, {in(one, MemberOnline, {}), in(two, MemberNotFound, {})}));
}

TEST_F(TextDisksTest, AVolumeThatIsGoneHasTheBaysThatItHadLast) {
  after(Kind::Appeared, {one, two});
  EXPECT_EQ("bays 1 2, were",
            after(Kind::Disappeared, {in(one, MemberOnline, {}), in(two, MemberOnline, {})}));
}

// Its disks may have been moved meanwhile.
TEST_F(TextDisksTest, AVolumeThatComesBackHasNoFormerBays) {
  after(Kind::Appeared, {one, two});
  after(Kind::Disappeared, {in(one, MemberOnline, {}), in(two, MemberOnline, {})});
  EXPECT_EQ("disk 22222222, bay not known: absent; bay 1: online",
            after(Kind::Appeared, {one, in(two, MemberNotFound, -1)}));
}

TEST_F(TextDisksTest, ADiskThatWorksHasNoFormerBay) {
  after(Kind::Appeared, {one, two});
  EXPECT_EQ("disk 22222222, bay not known: online; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberOnline, -1)}));
}

// Its bay had been concluded from the other disk's.
TEST_F(TextDisksTest, ADiskThatWasAbsentAndIsElsewhereHasNoFormerBay) {
  after(Kind::Appeared, {one, in(two, MemberNotFound, 2)});
  EXPECT_EQ("disk 22222222, bay not known: failed; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberFailed, -1)}));
}

TEST_F(TextDisksTest, ADiskThatStaysAbsentKeepsTheBayThatWasConcluded) {
  after(Kind::Appeared, {one, in(two, MemberNotFound, 2)});
  EXPECT_EQ("bay 2, was: absent; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberNotFound, -1)}));
}

TEST_F(TextDisksTest, AnotherEnclosuresBaysAreNotTakenForThisOnes) {
  after(Kind::Appeared, {one, two}, 7);
  EXPECT_EQ("disk 22222222, bay not known: absent; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberNotFound, -1)}, 8));
}

TEST_F(TextDisksTest, DisksAreAddedRemovedAndMoved) {
  after(Kind::Appeared, {one});
  EXPECT_EQ("bay 2: added, standby; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberStandby, 2)}));
  EXPECT_EQ("bay 3: moved from bay 2, standby; bay 1: online",
            after(Kind::Updated, {one, in(two, MemberStandby, 3)}));
  EXPECT_EQ("bay 3, was: removed; bay 1: online", after(Kind::Updated, {one}));
  EXPECT_EQ("bay 1", after(Kind::Updated, {one}));
}

TEST_F(TextDisksTest, NothingIsSaidOfWhichOfTwoDisksWithOneUUIDHasChanged) {
  const Members twins = {one, in(one, MemberFailed, 2)};
  EXPECT_EQ("bay 2: failed; bay 1: online", after(Kind::Appeared, twins));
  EXPECT_EQ("disk 11111111, bay not known: failed; bay 2: online",
            after(Kind::Updated, {in(one, MemberFailed, -1), in(one, MemberOnline, 2)}));
  EXPECT_EQ("bay 1", after(Kind::Updated, {one}));
}

}  // namespace
}  // namespace ProgramTest
