#include "model/RAIDMember.h"

#include <gtest/gtest.h>

#include "platform/pelago/Reference.h"

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;

class PlainMember : public RAIDMember {};

TEST(RAIDMember, AFreshMemberHasNoUUIDNoStateAndNoVolume) {
  const Pelago::Reference<PlainMember> member(new PlainMember);
  EXPECT_EQ("", member->uuid());
  EXPECT_EQ(MemberUnknown, member->state());
  EXPECT_EQ(nullptr, member->volume());
}

TEST(RAIDMember, ANewMemberHoldsNoReference) {
  const PlainMember member;
  EXPECT_EQ(0, member.references());
}

TEST(RAIDMember, TheBaseRefreshDoesNothing) {
  const Pelago::Reference<PlainMember> member(new PlainMember);
  member->refresh();
  EXPECT_EQ("", member->uuid());
  EXPECT_EQ(MemberUnknown, member->state());
  EXPECT_EQ(nullptr, member->volume());
  EXPECT_EQ(1, member->references());
}

}  // namespace
}  // namespace ModelTest
