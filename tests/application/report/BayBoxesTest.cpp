#include "application/report/BayBoxes.h"

#include <gtest/gtest.h>

#include "tests/application/report/Stories.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::BayBoxes;
using Program::boxesOf;
using Program::Picture;
using Program::Sight;

TEST(BayBoxesTest, ShowEachMemberInItsBay) {
  const Picture picture = degradedPicture(MemberFailed);
  const BayBoxes boxes = boxesOf(picture);
  ASSERT_EQ(2U, boxes.bays.size());
  EXPECT_EQ("online", boxes.bays[0].state);
  EXPECT_EQ("failed", boxes.bays[1].state);
  EXPECT_EQ("MEMBER2-0000", boxes.bays[1].member->uuid);
  EXPECT_TRUE(boxes.elsewhere.empty());
}

TEST(BayBoxesTest, ShowWhoWasInABayLastAndWhetherThereIsAnotherDiskNow) {
  Picture picture = degradedPicture(MemberNotFound, Sight::Remembered);
  picture.disks = {true, false};
  EXPECT_EQ("was here last; no disk is in the bay now", boxesOf(picture).bays[1].note);
  picture.disks = {true, true};
  EXPECT_EQ("was here last; another disk is in the bay now", boxesOf(picture).bays[1].note);
}

TEST(BayBoxesTest, ABayBelongsToTheMemberThatIsSeenInIt) {
  const Picture picture =
      pictureOf({volumeOf("Old", VolumeDegraded, {memberIn(2, MemberNotFound, Sight::Remembered)}),
                 volumeOf("New", VolumeOnline, {memberIn(2, MemberOnline)})});
  const BayBoxes boxes = boxesOf(picture);
  EXPECT_EQ("New", boxes.bays[1].volume->name);
  ASSERT_EQ(1U, boxes.elsewhere.size());
  EXPECT_EQ("Old", boxes.elsewhere[0].volume->name);
  EXPECT_EQ("was here last", boxes.elsewhere[0].note);
}

TEST(BayBoxesTest, WithoutAMemberABayIsEmptyOrHoldsAnotherDisk) {
  Picture picture = pictureOf({});
  picture.disks = {true, false};
  const BayBoxes boxes = boxesOf(picture);
  EXPECT_EQ("other disk", boxes.bays[0].state);
  EXPECT_EQ("empty", boxes.bays[1].state);
}

TEST(BayBoxesTest, MembersOfBaysThatTheEnclosureLacksAreShownElsewhere) {
  const Picture picture =
      pictureOf({volumeOf("Odd", VolumeOnline,
                          {memberIn(6, MemberOnline), memberIn(0, MemberOnline, Sight::Nowhere)})});
  const BayBoxes boxes = boxesOf(picture);
  ASSERT_EQ(2U, boxes.elsewhere.size());
  EXPECT_EQ(6, boxes.elsewhere[0].bay);
  EXPECT_EQ(0, boxes.elsewhere[1].bay);
}

}  // namespace
}  // namespace ProgramTest
