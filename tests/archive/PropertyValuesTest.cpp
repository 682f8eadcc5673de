#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "tests/archive/Support.h"

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Dictionary;
using MemoryRegistry::Number;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;

namespace {

RegistryContent withValue(const std::string& value) {
  return parse(archive("<key>k</key>" + value));
}

}  // namespace

TEST(PropertyValues, EachElementIsItsValueInXMLAndBinary) {
  const auto whole = [](std::uint64_t bits, unsigned width) { return Number{bits, width}; };
  const struct {
    const char* xml;
    PropertyValue value;
  } rows[] = {
      {"<true/>", true},
      {"<false/>", false},
      {"<true></true>", true},
      {"<integer>0</integer>", whole(0, 32)},
      {"<integer>2147483647</integer>", whole(0x7FFFFFFF, 32)},
      {"<integer>2147483648</integer>", whole(0x80000000, 64)},
      {"<integer>4294967295</integer>", whole(0xFFFFFFFF, 64)},
      {"<integer>-1</integer>", whole(~std::uint64_t{0}, 64)},
      {"<integer>9223372036854775807</integer>", whole(0x7FFFFFFFFFFFFFFF, 64)},
      {"<integer>-9223372036854775808</integer>", whole(0x8000000000000000, 64)},
      {"<integer>18446744073709551615</integer>", whole(~std::uint64_t{0}, 64)},
      {"<integer>+5</integer>", whole(5, 32)},
      {"<integer>0x1F</integer>", whole(31, 32)},
      {"<integer>-0x10</integer>", whole(~std::uint64_t{0} - 15, 64)},
      {"<integer> 12\n</integer>", whole(12, 32)},
      {"<real>1.5</real>", 1.5},
      {"<real>-1e3</real>", -1000.0},
      {"<string>text</string>", "text"},
      {"<string></string>", ""},
      {"<string/>", ""},
      {"<string> a\nb\tc </string>", " a\nb\tc "},
      {"<string>&lt;&amp;&gt;&quot;&apos;&#65;&#x42;</string>", "<&>\"'AB"},
      {"<string>a<!-- <dict> & -->b<![CDATA[<&amp;>]]>c</string>", "ab<&amp;>c"},
      {"<string>\xC3\xA9\xF0\x9F\x98\x80</string>", "\xC3\xA9\xF0\x9F\x98\x80"},
      {"<data>AQID</data>", Data{1, 2, 3}},
      {"<data>\n\tAQ\n\tIDBA==\n\t</data>", Data{1, 2, 3, 4}},
      {"<data/>", Data{}},
      {"<data></data>", Data{}},
      {"<data> \n</data>", Data{}},
      {"<date>2020-01-01T00:00:00Z</date>", Opaque{}},
      {"<array/>", Array{}},
      {"<array><true/><integer>1</integer><array/></array>", Array{true, 1, Array{}}},
      {"<dict/>", Dictionary{}},
      {"<dict><key>b</key><true/><key>a</key><string>x</string></dict>",
       Dictionary{{"b", true}, {"a", "x"}}},
      {"<dict><key>IOObjectClass</key><string>x</string></dict>",
       Dictionary{{"IOObjectClass", "x"}}},
      {"<dict><key></key><true/></dict>", Dictionary{{"", true}}},
      {"<dict><key>a&amp;b</key><true/></dict>", Dictionary{{"a&b", true}}},
      {"<array><!-- <dict> --><?pi <dict> ?><true /></array >", Array{true}},
  };
  for (const auto& row : rows) {
    const std::string text = archive(std::string("<key>k</key>") + row.xml);
    for (const std::string& list : {text, binaryTwin(text)}) {
      ASSERT_EQ("", reasonAgainst(list)) << row.xml;
      const RegistryContent content = parse(list);
      const PropertyValue* value = property(content.entries.at(0), "k");
      ASSERT_NE(nullptr, value) << row.xml;
      EXPECT_TRUE(row.value == *value) << row.xml << (&list == &text ? "" : " as binary");
    }
  }
}

TEST(PropertyValues, DataMayBreakItsLinesAnywhere) {
  const std::string digits = "AAECAwQFBgcICQoLDA0ODw==";
  for (std::size_t i = 0; i <= digits.size(); ++i) {
    const RegistryContent content =
        withValue("<data>" + digits.substr(0, i) + "\n\t \r" + digits.substr(i) + "</data>");
    const Data expected{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    EXPECT_TRUE(PropertyValue(expected) == *property(content.entries.at(0), "k")) << i;
  }
}

TEST(PropertyValues, RealsMayBeNotANumberOrInfinite) {
  const RegistryContent nan = withValue("<real>nan</real>");
  EXPECT_TRUE(std::isnan(std::get<double>(property(nan.entries.at(0), "k")->variant())));
  const RegistryContent infinity = withValue("<real>-infinity</real>");
  EXPECT_EQ(-std::numeric_limits<double>::infinity(),
            std::get<double>(property(infinity.entries.at(0), "k")->variant()));
}

TEST(PropertyValues, OfAKeyThatIsThereTwiceTheLastValueCounts) {
  const RegistryContent content = parse(
      archive("<key>b</key><integer>1</integer><key>a</key><true/><key>b</key><integer>2</integer>"
              "<key>IORegistryEntryName</key><string>x</string>"
              "<key>IORegistryEntryName</key><string>y</string>"));
  EXPECT_EQ(2U, content.entries.at(0).description.properties.size());
  EXPECT_TRUE(PropertyValue(2) == *property(content.entries[0], "b"));
  EXPECT_EQ("y", content.entries[0].description.name);
}

TEST(PropertyValues, PropertiesStayInOrderOfPrint) {
  const RegistryContent content =
      parse(archive("<key>z</key><true/><key>a</key><true/>"
                    "<key>m</key><true/>"));
  const Dictionary& properties = content.entries.at(0).description.properties;
  ASSERT_EQ(3U, properties.size());
  EXPECT_EQ("z", properties[0].first);
  EXPECT_EQ("a", properties[1].first);
  EXPECT_EQ("m", properties[2].first);
}
