#include "application/report/Picture.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using Program::EnclosureSlots;
using Program::Picture;
using Program::PictureTaker;
using Program::Sight;

struct Place {
  int slot;
  int inferred;
};

EnclosureSlots enclosureWith(const std::vector<Place>& places,
                             const std::array<int, 6>& answers = {1, 2, 2, 2, 2, 2}) {
  EnclosureSlots enclosure;
  enclosure.device.uid = 7;
  enclosure.device.vendor = "Example Storage";
  enclosure.device.model = "Two Bay";
  enclosure.device.bayCount = 2;
  enclosure.device.bridge = "IOService:/bridge";
  enclosure.volumes.emplace_back();
  enclosure.volumes[0].uuid = "SET";
  int number = 0;
  for (const Place& place : places) {
    enclosure.volumes[0].members.push_back({"MEMBER" + std::to_string(number++), {}, "", {}});
    enclosure.locations.push_back({place.slot, place.inferred});
  }
  enclosure.answers = answers;
  return enclosure;
}

void expectSight(const Picture& picture, std::size_t member, int bay, Sight sight) {
  EXPECT_EQ(bay, picture.volumes.at(0).members.at(member).bay);
  EXPECT_EQ(sight, picture.volumes.at(0).members.at(member).sight);
}

TEST(PictureTest, ShowsDisksInTheBaysInWhichTheyAreSeen) {
  PictureTaker taker;
  const Picture picture = taker.pictureOf(enclosureWith({{1, 1}, {2, 2}}));
  expectSight(picture, 0, 1, Sight::Seen);
  expectSight(picture, 1, 2, Sight::Seen);
  EXPECT_EQ((std::vector<bool>{true, true}), picture.disks);
  EXPECT_EQ("Example Storage Two Bay", picture.name);
  EXPECT_EQ("SET", picture.volumes[0].name) << "without a name of its own";
}

TEST(PictureTest, TakesABayThatFollowsFromTheOtherDisks) {
  PictureTaker taker;
  const Picture picture = taker.pictureOf(enclosureWith({{1, 1}, {-1, 2}}, {1, 1, 1, 1, 1, 1}));
  expectSight(picture, 1, 2, Sight::Inferred);
  EXPECT_EQ((std::vector<bool>{true, false}), picture.disks);
}

// The library answers places in the list then: each member gets the other's.
TEST(PictureTest, ShowsNoBayThatFollowsFromNothing) {
  PictureTaker taker;
  const Picture picture = taker.pictureOf(enclosureWith({{-1, 2}, {-1, 1}}));
  expectSight(picture, 0, 0, Sight::Nowhere);
  expectSight(picture, 1, 0, Sight::Nowhere);
}

TEST(PictureTest, ShowsNoBayThatFollowsFromALaterMemberThanTheFirstOther) {
  PictureTaker taker;
  const Picture picture = taker.pictureOf(enclosureWith({{-1, 2}, {-1, 1}, {2, 2}}));
  expectSight(picture, 0, 0, Sight::Nowhere);
  expectSight(picture, 1, 0, Sight::Nowhere);
}

TEST(PictureTest, RemembersWhereADiskWasSeenLast) {
  PictureTaker taker;
  taker.pictureOf(enclosureWith({{2, 2}, {1, 1}}));
  const Picture picture = taker.pictureOf(enclosureWith({{-1, 2}, {-1, 1}}));
  expectSight(picture, 0, 2, Sight::Remembered);
  expectSight(picture, 1, 1, Sight::Remembered);
}

TEST(PictureTest, RemembersNothingOfAnotherEnclosure) {
  PictureTaker taker;
  taker.pictureOf(enclosureWith({{2, 2}, {1, 1}}));
  EnclosureSlots other = enclosureWith({{-1, -1}, {-1, -1}});
  other.device.uid = 8;
  expectSight(taker.pictureOf(other), 0, 0, Sight::Nowhere);
}

TEST(PictureTest, BayZeroIsNoBay) {
  PictureTaker taker;
  expectSight(taker.pictureOf(enclosureWith({{0, 0}, {1, 1}})), 0, 0, Sight::Nowhere);
}

TEST(PictureTest, DiffersWhereAMemberDoes) {
  PictureTaker taker;
  const Picture one = taker.pictureOf(enclosureWith({{1, 1}, {2, 2}}));
  Picture other = one;
  EXPECT_TRUE(one == other);
  other.volumes[0].members[1].state = RAIDMonitoring::MemberFailed;
  EXPECT_FALSE(one == other);
}

}  // namespace
}  // namespace ProgramTest
