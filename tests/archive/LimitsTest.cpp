#include <gmock/gmock.h>

#include "platform/registry/memory/archive/BinaryPropertyListCheck.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/XMLPropertyListCheck.h"
#include "tests/archive/BinaryBuilder.h"
#include "tests/archive/Support.h"

using testing::HasSubstr;
using namespace std::string_literals;

namespace {

constexpr std::size_t tenMegabytes = 10'000'000;
constexpr std::size_t roomy = 100 * tenMegabytes;  // a limit on memory that is not met
const char* const tooDeep = ": is nested deeper than 1000 levels";
const char* const entriesTooDeep = ": entries are nested deeper than 1000 levels";
const char* const propertyTooDeep = ": has a property nested deeper than 1000 levels";
const char* const tooRepetitive = "it would take more than 20 times its size in memory";

// An archive with that many entries, each beneath the one before.
std::string chain(std::size_t entries, const std::string& inTheLast = "") {
  std::string begin;
  std::string end;
  for (std::size_t i = 1; i <= entries; ++i) {
    begin +=
        "<dict><key>IOObjectClass</key><string>C</string><key>IORegistryEntryID</key><integer>" +
        std::to_string(i) + "</integer>";
    if (i < entries) begin += "<key>IORegistryEntryChildren</key><array>";
    end += i < entries ? "</array></dict>" : "</dict>";
  }
  // The innermost dictionary ends first.
  return propertyList(begin + inTheLast + "</dict>" + repeated("</array></dict>", entries - 1));
}

std::string nestedArrays(std::size_t levels) {
  return "<key>k</key>" + repeated("<array>", levels) + repeated("</array>", levels);
}

std::string nestedDictionaries(std::size_t levels) {
  return "<key>k</key>" + repeated("<dict><key>k</key>", levels) + "<true/>" +
         repeated("</dict>", levels);
}

std::string filledArray(const std::string& element) {
  return archive("<key>k</key><array>" + repeated(element, tenMegabytes / element.size()) +
                 "</array>");
}

}  // namespace

TEST(Limits, EntriesMayBeNestedAThousandDeep) {
  EXPECT_EQ(1000U, parse(chain(1000)).entries.size());
  EXPECT_EQ(1000U, parse(binaryTwin(chain(1000))).entries.size());
  EXPECT_THAT(reasonAgainst(chain(1001)), HasSubstr(entriesTooDeep));
  EXPECT_THAT(reasonAgainst(binaryTwin(chain(1001))), HasSubstr(entriesTooDeep));
}

TEST(Limits, SoMayThePropertyOfAnEntryAtAnyDepth) {
  EXPECT_EQ("", reasonAgainst(archive(nestedArrays(1000))));
  EXPECT_EQ("", reasonAgainst(chain(1000, nestedArrays(1000))));
  EXPECT_EQ("", reasonAgainst(binaryTwin(chain(1000, nestedArrays(1000)))));
  EXPECT_THAT(reasonAgainst(archive(nestedArrays(1001))), HasSubstr(propertyTooDeep));
  EXPECT_THAT(reasonAgainst(binaryTwin(archive(nestedArrays(1001)))), HasSubstr(propertyTooDeep));
  EXPECT_EQ("", reasonAgainst(archive(nestedDictionaries(1000))));
  EXPECT_THAT(reasonAgainst(archive(nestedDictionaries(1001))), HasSubstr(propertyTooDeep));
  EXPECT_THAT(reasonAgainst(chain(1000, nestedArrays(1001))), HasSubstr(propertyTooDeep));
}

TEST(Limits, DepthThatOnlyMergedPrintsReachCounts) {
  // Entry 2 tops 700 entries; a second print of the lowest of them tops 700 more.
  const auto tower = [](std::size_t from, std::size_t to) {
    std::string begin;
    for (std::size_t i = from; i <= to; ++i) {
      begin +=
          "<dict><key>IOObjectClass</key><string>C</string><key>IORegistryEntryID</key>"
          "<integer>" +
          std::to_string(i) + "</integer><key>IORegistryEntryChildren</key><array>";
    }
    return begin + repeated("</array></dict>", to - from + 1);
  };
  EXPECT_EQ("", reasonAgainst(archive(children(tower(2, 701) + tower(701, 1000)))));
  EXPECT_THAT(reasonAgainst(archive(children(tower(2, 701) + tower(701, 1001)))),
              HasSubstr(entriesTooDeep));
}

TEST(Limits, EndlessNestingIsRefused) {
  EXPECT_THAT(reasonAgainst("<plist>" + repeated("<array>", tenMegabytes / 7)), HasSubstr(tooDeep));
  EXPECT_THAT(reasonAgainst("<plist>" + repeated("<dict><key>a</key>", tenMegabytes / 18)),
              HasSubstr(tooDeep));
  BinaryBuilder builder;
  builder.referenceSize = 4;
  for (std::uint64_t i = 1; i < 500'000; ++i) {
    builder.objects.push_back("\xA1" + BinaryBuilder::number(i, 4));
  }
  builder.objects.push_back("\x09");
  EXPECT_THAT(reasonAgainst(builder.build()), HasSubstr(tooDeep));
}

TEST(Limits, WhatWouldTakeMoreThanTwentyTimesItsSizeIsRefused) {
  for (const char* element : {"<true/>", "<data/>", "<array/>", "<dict/>", "<string/>"}) {
    EXPECT_THAT(reasonAgainst(filledArray(element)), HasSubstr(tooRepetitive)) << element;
  }
  EXPECT_EQ("", reasonAgainst(filledArray("<integer>1</integer>")));
}

// By hand: a container takes 216 bytes, a key 160, a text or scalar 184, and each character of a
// key or a text two more.
TEST(Limits, WhatAnXMLListTakesIsCountedToTheByte) {
  const std::string list =
      "<plist><dict><key>ab</key><array><integer>12</integer><string>xyz</string><true/></array>"
      "</dict></plist>";
  const std::size_t takes = list.size() + 216 + 160 + 2 * 2 + 216 + 184 + 2 * 2 + 184 + 2 * 3 + 184;
  EXPECT_NO_THROW(MemoryRegistry::checkXMLPropertyList(list.data(), list.size(), takes));
  EXPECT_THROW(MemoryRegistry::checkXMLPropertyList(list.data(), list.size(), takes - 1),
               MemoryRegistry::TooRepetitive);
}

// The same, but for three bytes for each two of UTF-16; and for a reference half a scalar more as
// long as it isn't known what it names.
TEST(Limits, WhatABinaryListTakesIsCountedToTheByte) {
  BinaryBuilder once;
  once.objects = {"\xA2\x01\x02", "\x63\0a\0b\0c"s, "\x52xy"};
  BinaryBuilder thrice;
  thrice.objects = {"\xA3\x01\x01\x01", "\x63\0a\0b\0c"s};
  const std::size_t wide = 184 + 3 * 2 * 3;
  const struct {
    std::string list;
    std::size_t takes;
  } rows[] = {{once.build(), 216 + 2 * 76 + wide + 184 + 2 * 2}, {thrice.build(), 216 + 3 * wide}};
  for (const auto& [list, takes] : rows) {
    const std::size_t limit = list.size() + takes;
    EXPECT_NO_THROW(MemoryRegistry::checkBinaryPropertyList(list.data(), list.size(), limit));
    EXPECT_THROW(MemoryRegistry::checkBinaryPropertyList(list.data(), list.size(), limit - 1),
                 MemoryRegistry::TooRepetitive);
  }
}

TEST(Limits, ABinaryListThatGrowsWithoutEndIsRefused) {
  BinaryBuilder doubling;
  for (std::size_t i = 0; i < 60; ++i) {
    const char next = static_cast<char>(i + 1);
    doubling.objects.push_back("\xA2"s + next + next);
  }
  doubling.objects.push_back("\x09");
  EXPECT_THAT(reasonAgainst(doubling.build()), HasSubstr(tooRepetitive));

  BinaryBuilder wide;
  wide.objects = {
      "\xAF\x12" + BinaryBuilder::number(tenMegabytes, 4) + std::string(tenMegabytes, '\1'),
      "\x09"};
  EXPECT_THAT(reasonAgainst(wide.build()), HasSubstr(tooRepetitive));
}

TEST(Limits, BinaryObjectsThatOverlapCostNoTime) {
  // Half a million objects that are all the same long array or text.
  const std::size_t size = 500'000;
  BinaryBuilder builder;
  builder.referenceSize = 4;
  std::string top = "\xAF\x12" + BinaryBuilder::number(size, 4);
  for (std::size_t i = 1; i <= size; ++i)
    top += BinaryBuilder::number(i, 4);
  for (const std::string& shared :
       {"\x5F\x12" + BinaryBuilder::number(size, 4) + std::string(size, 'x'),
        "\xAF\x12" + BinaryBuilder::number(size, 4) + std::string(4 * size, '\0')}) {
    std::vector<std::uint64_t> offsets(size + 1, 8 + top.size());
    offsets[0] = 8;
    EXPECT_NE("", reasonAgainst(builder.finish("bplist00" + top + shared, offsets)));
  }
}

TEST(Limits, ManyNodesAtGreatDepthAreRefused) {
  BinaryBuilder builder;
  builder.referenceSize = 4;
  constexpr std::uint64_t levels = 2900;
  for (std::uint64_t i = 1; i <= levels; ++i) {
    builder.objects.push_back("\xA1" + BinaryBuilder::number(i, 4));
  }
  std::string bottom = "\xAF\x12" + BinaryBuilder::number(400'000, 4);
  for (int i = 0; i < 400'000; ++i)
    bottom += BinaryBuilder::number(levels + 1, 4);
  builder.objects.push_back(bottom);
  builder.objects.push_back("\x09");
  EXPECT_THAT(reasonAgainst(builder.build()), HasSubstr("nested too deeply too often"));
}

TEST(Limits, ATextOfReferencesIsRefused) {
  EXPECT_THAT(reasonAgainst(archive("<key>k</key><string>" + repeated("&amp;", tenMegabytes / 5) +
                                    "</string>")),
              HasSubstr("has a text with too many references"));
  EXPECT_EQ(
      "", reasonAgainst(archive("<key>k</key><string>" + repeated("&amp;", 10'000) + "</string>")));
}

// Where each reference moves the whole text; what that costs may be 4,000,000,000 and no more.
TEST(Limits, TheReferencesOfATextAreCountedToTheByte) {
  const auto text = [](std::size_t references, std::size_t letters) {
    return "<plist><string>" + repeated("&amp;", references) + std::string(letters, 'x') +
           "</string></plist>";
  };
  const std::string most = text(20'000, 100'000);  // which is 200,000 characters
  const std::string more = text(20'000, 100'001);
  EXPECT_NO_THROW(MemoryRegistry::checkXMLPropertyList(most.data(), most.size(), roomy));
  EXPECT_THROW(MemoryRegistry::checkXMLPropertyList(more.data(), more.size(), roomy),
               MemoryRegistry::Refusal);
}

// Where each key is compared with those before, at sixteen characters more than its own; what that
// costs may be 4,000,000,000 and no more.
TEST(Limits, TheKeysOfADictionaryAreCountedToTheByte) {
  const auto keys = [](std::size_t count, std::size_t length, const std::string& another) {
    const std::string key = "<key>" + std::string(length, 'x') + "</key><true/>";
    return "<plist><dict>" + repeated(key, count - 1) + "<key>" + another + "</key><true/>" +
           "</dict></plist>";
  };
  const std::string most = keys(10'000, 24, std::string(24, 'y'));
  const std::string more = keys(10'000, 24, std::string(25, 'y'));
  EXPECT_NO_THROW(MemoryRegistry::checkXMLPropertyList(most.data(), most.size(), roomy));
  EXPECT_THROW(MemoryRegistry::checkXMLPropertyList(more.data(), more.size(), roomy),
               MemoryRegistry::Refusal);
}

TEST(Limits, ADictionaryOfVeryManyKeysIsRefused) {
  const auto keys = [](int count) {
    std::string items;
    for (int i = 0; i < count; ++i)
      items += "<key>" + std::to_string(i) + "</key><true/>";
    return archive(items);
  };
  EXPECT_THAT(reasonAgainst(keys(400'000)), HasSubstr("has a dictionary with too many keys"));
  EXPECT_EQ(10'000U, parse(keys(10'000)).entries.at(0).description.properties.size());
}

TEST(Limits, RepeatedPrintsOfAnEntryKeepItsPropertiesOnce) {
  const std::string data = "<key>d</key><data>" + repeated("AAAA", 1000) + "</data>";
  const std::string print = entry("9", data);
  std::string parents;
  for (int i = 0; i < 1000; ++i)
    parents += entry(std::to_string(100 + i), children(print));
  const auto content = parse(archive(children(parents)));
  ASSERT_EQ(1002U, content.entries.size());
  EXPECT_EQ(1000U, content.entries.at(2).parents.size());
  EXPECT_EQ(1U, content.entries.at(2).description.properties.size());
}
