#include "application/json/Json.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "application/json/JsonModel.h"

namespace ProgramTest {
namespace {

using Program::Json;
using Program::written;

TEST(Json, HasABlankBehindCommasAndColonsAndKeepsTheOrderOfKeys) {
  Json value{{"b", 1}, {"a", Json::array({1, Json{{"c", "d"}}})}};
  EXPECT_EQ(R"({"b": 1, "a": [1, {"c": "d"}]})", written(value));
}

TEST(Json, OfNothingIsEmptyBrackets) {
  EXPECT_EQ("[]", written(Json::array()));
  EXPECT_EQ("{}", written(Json::object()));
}

TEST(Json, NumbersAreWhole) {
  EXPECT_EQ("18446744073709551615", written(std::numeric_limits<std::uint64_t>::max()));
  EXPECT_EQ("-9223372036854775808", written(std::numeric_limits<std::int64_t>::min()));
}

TEST(Json, TextIsAsciiWithEscapes) {
  const struct {
    const char* text;
    const char* json;
  } rows[] = {{"a\"b\\c/", R"("a\"b\\c/")"},
              {"\n\r\t\b\f", R"("\n\r\t\b\f")"},
              {"\x1b[31m\x01", R"("\u001b[31m\u0001")"},
              {"\x7f", R"("\u007f")"},
              {"Bücher", R"("B\u00fccher")"},
              {"写真", R"("\u5199\u771f")"},
              {"😀", R"("\ud83d\ude00")"}};
  for (const auto& row : rows)
    EXPECT_EQ(row.json, written(Json(row.text))) << row.json;
}

TEST(Json, TextThatIsNotUTF8HasReplacementCharacters) {
  EXPECT_EQ(R"("a\ufffdb")", written(Json("a\xff"
                                          "b")));
  EXPECT_EQ(R"("\ufffd")", written(Json("\xe5\x86")));
}

TEST(Json, OfAMemberHasItsSlotOnlyWhenItWasAskedFor) {
  Program::VolumeSnapshot volume;
  volume.members = {{"M", RAIDMonitoring::MemberNotFound, "P", -1},
                    {"N", RAIDMonitoring::MemberOnline, "Q", std::nullopt}};
  EXPECT_EQ(R"([{"uuid": "M", "state": "not-found", "path": "P", "slot": -1}, )"
            R"({"uuid": "N", "state": "online", "path": "Q"}])",
            written(toJson(volume)["members"]));
}

TEST(Json, OfADeviceHasItsNumbersUnsigned) {
  Program::DeviceSnapshot device;
  device.uid = 7;
  device.vendor = "invalid";
  device.vendorID = ~0ULL;
  device.model = "invalid";
  device.status = -1;
  EXPECT_EQ(
      R"({"uid": "0x0000000000000007", "vendor": "invalid", "vendor_id": 18446744073709551615, )"
      R"("model": "invalid", "model_id": 0, "status": -1, "bay_count": 0, "bridge": ""})",
      written(toJson(device)));
}

}  // namespace
}  // namespace ProgramTest
