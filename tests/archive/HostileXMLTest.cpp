#include <gmock/gmock.h>

#include "tests/archive/Support.h"

using testing::HasSubstr;
using testing::Not;

TEST(HostileXML, IsRefusedWithOneLineThatSaysWhy) {
  using namespace std::string_literals;
  const auto value = [](const std::string& xml) { return archive("<key>k</key>" + xml); };
  const struct {
    std::string text;
    const char* reason;
  } rows[] = {
      {"", "is empty"},
      {"hello", "is not a property list"},
      {" \n ", "is not a property list"},
      {"\xFF\xFE<\0p\0"s, "is a text in UTF-16"},
      {"<", "ends in the middle"},
      {"<?xml", "ends in the middle"},
      {"<!-- <plist>", "ends in the middle"},
      {"<!DOCTYPE plist", "ends in the middle"},
      {"<plist>", "ends in the middle"},
      {"<plist><dict>", "ends in the middle"},
      {"<plist><dict><key>a", "ends in the middle"},
      {"<plist><dict><key>a</ke", "ends in the middle"},
      {"<plist><dict></dict>", "ends in the middle"},
      {"<plist><data>AAAA", "ends in the middle"},
      {"<plist><string><![CDATA[a]]</string>", "ends in the middle"},
      {"<dict/>", "<plist> is missing"},
      {"</array>", "<plist> is missing"},
      {"<plist/>", "a list without content"},
      {"<plist></plist>", "an end tag without its begin"},
      {"<plist><plist><true/></plist></plist>", "<plist> within <plist>"},
      {propertyList("<true/><true/>"), "</plist> is missing"},
      {propertyList("<dict>") + "</dict>", "an end tag without its begin"},
      {archive() + "more", "something follows the list"},
      {archive() + archive(), "something follows the list"},
      {"<!DOCTYPE p [<!ENTITY a \"<dict>\">]>" + archive(), "declarations of its own"},
      {"<!DOCTYPE p <!ENTITY a>>" + archive(), "declarations of its own"},
      {"<!DOCTYPE \"a>b\">" + archive(), "text stands between elements"},
      {"<!--> <!-- -->" + archive(), "a comment or instruction is cut short"},
      {"<?>?>" + archive(), "a comment or instruction is cut short"},
      {propertyList("text"), "text stands between elements"},
      {propertyList("<dict>\0</dict>"s), "has a zero byte"},
      {value("<string>a\0b</string>"s), "has a zero byte"},
      {value("<string>\xFF</string>"), "not UTF-8"},
      {value("<string>\xC0\xAF</string>"), "not UTF-8"},
      {value("<string>\xED\xA0\x80</string>"), "not UTF-8"},
      {value("<string>\xF4\x90\x80\x80</string>"), "not UTF-8"},
      {value("<string>\xE2\x82</string>"), "not UTF-8"},
      {value("<string>&foo;</string>"), "a reference that cannot be read"},
      {value("<string>&amp</string>"), "a reference that cannot be read"},
      {value("<string>&;</string>"), "a reference that cannot be read"},
      {value("<string>&#0;</string>"), "a reference that cannot be read"},
      {value("<string>&#xD800;</string>"), "a reference that cannot be read"},
      {value("<string>&#x110000;</string>"), "a reference that cannot be read"},
      {value("<string>&#99999999999999999999999;</string>"), "a reference that cannot be read"},
      {value("<integer>&#49;</integer>"), "a reference that cannot be read"},
      {value("<string>a<b/>c</string>"), "a tag within text"},
      {value("<string>a<true/>c</string>"), "a tag within text"},
      {value("<integer>1<!-- -->2</integer>"), "a tag within text"},
      {value("<string>a</integer>"), "an end tag without its begin"},
      {value("<foo/>"), "a tag that property lists don't have"},
      {value("<strings/>"), "a tag that property lists don't have"},
      {value("<extraordinarily/>"), "a tag that property lists don't have"},
      {value("<String/>"), "a tag that property lists don't have"},
      {value("<true x=\"<dict>\"/>"), "a tag that property lists don't have"},
      {value("< true/>"), "a tag that property lists don't have"},
      {value("<true/ >"), "a tag that property lists don't have"},
      {value("<true>x</true>"), "text within a boolean"},
      {value("<![CDATA[x]]>"), "a tag that property lists don't have"},
      {propertyList("<dict><true/></dict>"), "a value without a key"},
      {propertyList("<dict><string>a</string><true/></dict>"), "a value without a key"},
      {propertyList("<dict><key>a</key></dict>"), "a key without a value"},
      {propertyList("<dict><key>a</key><key>b</key></dict>"), "a key out of place"},
      {propertyList("<dict><key/><true/></dict>"), "an empty key"},
      {propertyList("<key>a</key>"), "a key out of place"},
      {propertyList("<array><key>a</key></array>"), "a key out of place"},
      {propertyList("<array><dict></array>"), "an end tag without its begin"},
      {value("<integer>abc</integer>"), "an integer that cannot be read"},
      {value("<integer>12abc</integer>"), "an integer that cannot be read"},
      {value("<integer></integer>"), "an integer that cannot be read"},
      {value("<integer/>"), "an integer that cannot be read"},
      {value("<integer>- 1</integer>"), "an integer that cannot be read"},
      {value("<integer>--1</integer>"), "an integer that cannot be read"},
      {value("<integer>010</integer>"), "an integer that cannot be read"},
      {value("<integer>1.5</integer>"), "an integer that cannot be read"},
      {value("<integer>18446744073709551616</integer>"), "an integer that cannot be read"},
      {value("<integer>-9223372036854775809</integer>"), "an integer that cannot be read"},
      {value("<integer>0xFFFFFFFFFFFFFFFFF</integer>"), "an integer that cannot be read"},
      {value("<integer>0x</integer>"), "an integer that cannot be read"},
      {value("<integer>1</jnteger>"), "a tag that property lists don't have"},
      {value("<real>abc</real>"), "a real number that cannot be read"},
      {value("<real>1 2</real>"), "a real number that cannot be read"},
      {value("<real/>"), "a real number that cannot be read"},
      {value("<data>!!!!</data>"), "data that is no base64"},
      {value("<data>AAA</data>"), "data that is no base64"},
      {value("<data>QU=JD</data>"), "data that is no base64"},
      {value("<data>A===</data>"), "data that is no base64"},
      {value("<data>==</data>"), "data that is no base64"},
      {value("<data>\xC3\xA9==</data>"), "data that is no base64"},
  };
  for (const auto& row : rows) {
    const std::string reason = reasonAgainst(row.text);
    EXPECT_THAT(reason, HasSubstr(row.reason)) << row.text;
    EXPECT_THAT(reason, Not(HasSubstr("\n"))) << row.text;
    EXPECT_EQ(0U, reason.rfind("it: ", 0)) << row.text;
  }
}

TEST(HostileXML, TheReasonNamesTheLine) {
  EXPECT_EQ("it: is not a property list that can be parsed: line 3: a value without a key",
            reasonAgainst("<plist>\n<dict>\n<true/>\n</dict></plist>"));
}

TEST(HostileXML, EveryBeginningOfAnArchiveIsRefused) {
  const std::string text = archive(
      "<key>a</key><string>x&amp;<![CDATA[y]]><!-- z --></string>"
      "<key>b</key><data>AQ==</data>" +
      children(entry("2")));
  const std::size_t end = text.find("</plist>") + 8;
  for (std::size_t size = 0; size < end; ++size) {
    EXPECT_NE("", reasonAgainst(text.substr(0, size))) << size;
  }
  EXPECT_EQ("", reasonAgainst(text.substr(0, end)));
}

// In memory of exactly its size, where a sanitizer sees what is read beyond.
TEST(HostileXML, NothingIsReadBeyondAnArchiveThatEndsAnywhere) {
  const auto reasonOf = [](const std::string& text) {
    const std::vector<char> exact(text.begin(), text.end());
    try {
      MemoryRegistry::parseArchive(exact.data(), exact.size(), "file");
      return std::string();
    } catch (const MemoryRegistry::ArchiveError& error) {
      return std::string(error.what());
    }
  };
  const std::string whole = archive(
      "<key>k</key><string>&lt;</string><key>n</key><integer>1234567890123456789</integer>");
  for (std::size_t size = 1; size < whole.find("</plist>"); ++size)
    EXPECT_NE("", reasonOf(whole.substr(0, size))) << size;
  EXPECT_THAT(reasonOf("\t\t\t\t\t\t\t\t"), HasSubstr("is not a property list"));
  EXPECT_EQ("", reasonOf(whole + "\t\t\t\t\t\t\t\t"));
}
