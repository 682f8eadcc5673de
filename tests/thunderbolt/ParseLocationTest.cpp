#include "thunderbolt/ParseLocation.h"

#include <limits>
#include <optional>

#include "tests/thunderbolt/SlotTest.h"

namespace RAIDMonitoring {
namespace {

struct Row {
  const char* text;
  std::optional<int> number;  // none: the target keeps its value
};
constexpr int Lowest = std::numeric_limits<int>::min();
constexpr Row rows[] = {
    {"0", 0},
    {"1", 1},
    {"7,0", 7},
    {"1F,2", 1},
    {"1:2", 1},
    {"007", 7},
    {"0x10", 0},
    {"12 34", 12},
    {"+7", 7},
    {"-7", -7},
    {"-0", 0},
    {" 7", 7},
    {" \t\n\v\f\r-7", -7},
    {"2147483642", 2147483642},  // the highest that the largest offset can be added to
    {"2147483643", std::nullopt},
    {"2147483647", std::nullopt},
    {"2147483648", std::nullopt},
    {"-2147483648", Lowest},
    {"-2147483649", std::nullopt},
    {"00000000000000000000000000000000012", 12},
    {"99999999999999999999999999999999999", std::nullopt},
    {"-99999999999999999999999999999999999", std::nullopt},
    {"18446744073709551617", std::nullopt},  // 1 in 64 bits
    {"4294967297", std::nullopt},            // 1 in 32 bits
    {"", std::nullopt},
    {" ", std::nullopt},
    {"a", std::nullopt},
    {"F1", std::nullopt},
    {",7", std::nullopt},
    {"+", std::nullopt},
    {"-", std::nullopt},
    {"+-7", std::nullopt},
    {"--7", std::nullopt},
    {"- 7", std::nullopt},
    {"\xEF\xBC\x97", std::nullopt},  // a digit, but no decimal one of ASCII
};

TEST(ParseLocation, ReadsTheDecimalNumberAtTheStartOrLeavesTheTargetAlone) {
  for (const Row& row : rows) {
    for (const int before : {-1, 0, 5, Lowest}) {
      int number = before;
      parseLocation(row.text, number);
      EXPECT_EQ(row.number.value_or(before), number) << "'" << row.text << "' over " << before;
    }
  }
}

using ParseLocationInTheRegistry = SlotTest;

// The slot of the second disk is one more than its port's number; of a port without a number, one
// more than the slot of the first disk, which is 5.
TEST_F(ParseLocationInTheRegistry, IsWhatAPortsNumberIsReadWith) {
  two.complete().addDisks({1, 2});
  MemoryRegistry::setLocation(two.port(1), "4");
  const HeldDevice device(UID);
  for (const Row& row : rows) {
    MemoryRegistry::setLocation(two.port(2), row.text);
    EXPECT_EQ(row.number.value_or(5) + 1, device->locationOfNotMember(12345)) << row.text;
  }
  start();
}

}  // namespace
}  // namespace RAIDMonitoring
