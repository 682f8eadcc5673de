#include "application/record/StandIns.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <set>

namespace ProgramTest {
namespace {

using Program::StandIns;

const std::string UUID = "0123456789abcdef0123456789abcdef";

TEST(StandIns, AreTheSameForTheSameAndOthersForOthers) {
  StandIns standIns;
  std::set<std::string> seen;
  for (const char* name : {"Projects", "Projects2", "A", "B", "Z", "abcd", "", "efgh"}) {
    const std::string first = standIns.forText(name, "Name");
    EXPECT_EQ(first, standIns.forText(name, "Serial"));
    EXPECT_TRUE(seen.insert(first).second) << first;
    EXPECT_NE(name, first);
  }
}

TEST(StandIns, AreAsLongAsTheOriginalWhileThereIsRoom) {
  StandIns standIns;
  EXPECT_EQ("Name0001", standIns.forText("Projects", "Name"));
  EXPECT_EQ("Name2", standIns.forText("12345", "Name"));
  EXPECT_EQ(4U, standIns.forText("1234", "Name").size());
  std::set<std::string> seen;
  for (char c = 'a'; c <= 'z'; ++c)
    seen.insert(standIns.forText(std::string(1, c), "Name"));
  EXPECT_EQ(26U, seen.size());
}

TEST(StandIns, OfOneRunSayNothingOfAnothers) {
  StandIns one;
  StandIns other;
  EXPECT_NE(one.forUUID(UUID), other.forUUID(UUID));
  EXPECT_NE(one.forNumber(0x00030F1B7461E0A5), other.forNumber(0x00030F1B7461E0A5));
}

TEST(StandIns, WhatIdentifiesNothingStays) {
  StandIns standIns;
  EXPECT_EQ(std::string(32, '0'), standIns.forUUID(std::string(32, '0')));
  EXPECT_EQ(std::string(32, 'f'), standIns.forUUID(std::string(32, 'f')));
  EXPECT_EQ(255U, standIns.forNumber(255));
  const StandIns::Address everybody = {255, 255, 255, 255, 255, 255};
  EXPECT_EQ(everybody, standIns.forAddress(everybody));
}

TEST(StandIns, OfAddressesAreAddressesOfNobodysMaking) {
  StandIns standIns;
  const StandIns::Address one = {0x10, 0xdd, 0xb1, 1, 2, 3};
  const StandIns::Address other = {0x10, 0xdd, 0xb1, 1, 2, 4};
  EXPECT_EQ((StandIns::Address{2, 0, 0, 0, 0, 1}), standIns.forAddress(one));
  EXPECT_EQ((StandIns::Address{2, 0, 0, 0, 0, 2}), standIns.forAddress(other));
  EXPECT_EQ((StandIns::Address{2, 0, 0, 0, 0, 1}), standIns.forAddress(one));
}

TEST(StandIns, OfNumbersKeepTheirOrderAndTheirHalf) {
  EXPECT_TRUE(rc::check([](const std::vector<std::uint64_t>& numbers) {
    StandIns standIns;
    std::map<std::uint64_t, std::uint64_t> found;
    for (const std::uint64_t number : numbers)
      found[number] = standIns.forNumber(number);
    std::optional<std::uint64_t> before;
    for (const auto& [number, standIn] : found) {
      RC_ASSERT(!before || *before < standIn);
      RC_ASSERT((number < 0x80000000U) == (standIn < 0x80000000U));
      RC_ASSERT(standIn == standIns.forNumber(number));
      before = standIn;
    }
  }));
}

TEST(StandIns, OfUUIDsKeepTheirOrder) {
  const auto digits =
      rc::gen::container<std::string>(32, rc::gen::element('0', '1', '9', 'a', 'f'));
  EXPECT_TRUE(rc::check([digits] {
    StandIns standIns;
    std::map<std::string, std::string> found;
    for (const std::string& each : *rc::gen::container<std::vector<std::string>>(digits))
      found[each] = standIns.forUUID(each);
    std::string before;
    for (const auto& [original, standIn] : found) {
      RC_ASSERT(before < standIn);
      RC_ASSERT(standIn.size() == original.size());
      before = standIn;
    }
  }));
}

}  // namespace
}  // namespace ProgramTest
