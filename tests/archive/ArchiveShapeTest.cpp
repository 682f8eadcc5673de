#include <gmock/gmock.h>

#include "tests/archive/Support.h"

using MemoryRegistry::EntryID;
using MemoryRegistry::RegistryContent;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char* const key = "<key>";

std::string text(const std::string& name, const std::string& value) {
  return key + name + "</key><string>" + value + "</string>";
}

}  // namespace

TEST(ArchiveShape, SyntheticKeysDescribeTheEntryAndAreNoProperties) {
  const RegistryContent content = parse(
      archive(text("IORegistryEntryName", "disk") + text("IORegistryEntryLocation", "1F,2") +
              "<key>IOObjectInheritance</key><array><string>IORegistryEntry</string>"
              "<string>IOService</string></array><key>IOObjectRetainCount</key><integer>7</integer>"
              "<key>IOServiceState</key><integer>30</integer><key>IOServiceBusyState</key>"
              "<integer>0</integer><key>IOServiceBusyTime</key><integer>5</integer>" +
              text("IORegistryEntryNamed", "kept")));
  ASSERT_EQ(1U, content.entries.size());
  const auto& root = content.entries[0];
  EXPECT_EQ(EntryID{1}, root.id);
  EXPECT_EQ("IOService", root.description.className);
  EXPECT_EQ("disk", root.description.name);
  EXPECT_EQ("1F,2", root.description.location);
  EXPECT_THAT(root.description.inheritance, ElementsAre("IORegistryEntry", "IOService"));
  ASSERT_TRUE(root.description.state.has_value());
  EXPECT_EQ(30U, *root.description.state);
  ASSERT_EQ(1U, root.description.properties.size());
  EXPECT_EQ("IORegistryEntryNamed", root.description.properties[0].first);
}

TEST(ArchiveShape, WhatIsNotPrintedIsAbsentAndAMissingNameIsTheClass) {
  const RegistryContent content = parse(archive());
  const auto& root = content.entries.at(0).description;
  EXPECT_EQ("IOService", root.name);
  EXPECT_EQ("", root.location);
  EXPECT_THAT(root.inheritance, IsEmpty());
  EXPECT_FALSE(root.state.has_value());
  EXPECT_THAT(root.properties, IsEmpty());
}

TEST(ArchiveShape, AnEmptyNameIsNoMissingName) {
  const RegistryContent content = parse(archive(text("IORegistryEntryName", "")));
  EXPECT_EQ("", content.entries.at(0).description.name);
}

TEST(ArchiveShape, ChildrenAreInOrderOfPrint) {
  const RegistryContent content =
      parse(archive(children(entry("9") + entry("5", children(entry("7"))) + entry("6"))));
  EXPECT_THAT(ids(content, {0, 1, 2, 3, 4}), ElementsAre(1, 9, 5, 7, 6));
  EXPECT_THAT(ids(content, content.entries[0].children), ElementsAre(9, 5, 6));
  EXPECT_THAT(content.entries[0].parents, IsEmpty());
  EXPECT_THAT(ids(content, content.entries[3].parents), ElementsAre(5));
}

TEST(ArchiveShape, AnEntryPrintedUnderSeveralParentsIsOneEntryWithThoseParentsInOrder) {
  const std::string set = entry("8", children(entry("9")));
  const RegistryContent content =
      parse(archive(children(entry("3", children(set)) + entry("2", children(set)))));
  ASSERT_EQ(5U, content.entries.size());
  EXPECT_EQ(EntryID{8}, content.entries[2].id);
  EXPECT_THAT(ids(content, content.entries[2].parents), ElementsAre(3, 2));
  EXPECT_THAT(ids(content, content.entries[2].children), ElementsAre(9));
  EXPECT_THAT(ids(content, content.entries[3].parents), ElementsAre(8));
}

TEST(ArchiveShape, TheFirstPrintGivesNameClassAndPropertiesAndLinksAreMerged) {
  const std::string first =
      entry("8", text("IORegistryEntryName", "first") + text("p", "1") + children(entry("10")));
  const std::string second = entry("8", text("IORegistryEntryName", "second") + text("q", "2") +
                                            children(entry("11") + entry("10")));
  const RegistryContent content =
      parse(archive(children(entry("2", children(first)) + entry("3", children(second)))));
  const auto& merged = content.entries.at(2);
  EXPECT_EQ("first", merged.description.name);
  ASSERT_EQ(1U, merged.description.properties.size());
  EXPECT_EQ("p", merged.description.properties[0].first);
  EXPECT_THAT(ids(content, merged.children), ElementsAre(10, 11));
}

TEST(ArchiveShape, ARepeatUnderTheSameParentIsOneLink) {
  const RegistryContent content = parse(archive(children(entry("2") + entry("2"))));
  ASSERT_EQ(2U, content.entries.size());
  EXPECT_THAT(content.entries[0].children, ElementsAre(1));
  EXPECT_THAT(content.entries[1].parents, ElementsAre(0));
}

TEST(ArchiveShape, AnInheritanceThatEndsInAnotherClassIsContinuedWithTheEntrysOwn) {
  const RegistryContent content = parse(
      archive("<key>IOObjectInheritance</key><array><string>IORegistryEntry</string></array>"));
  EXPECT_THAT(content.entries.at(0).description.inheritance,
              ElementsAre("IORegistryEntry", "IOService"));
}

TEST(ArchiveShape, AnEmptyInheritanceIsNone) {
  const RegistryContent content = parse(archive("<key>IOObjectInheritance</key><array/>"));
  EXPECT_THAT(content.entries.at(0).description.inheritance, IsEmpty());
}

TEST(ArchiveShape, TheStateIsItsLower32Bits) {
  const RegistryContent content = parse(archive("<key>IOServiceState</key><integer>-1</integer>"));
  EXPECT_EQ(0xFFFFFFFFU, content.entries.at(0).description.state);
}

TEST(ArchiveShape, WhatIsNoArchiveIsRefusedWithItsReason) {
  const std::string plain = "<key>IOObjectClass</key><string>C</string>";
  const struct {
    std::string list;
    const char* reason;
  } rows[] = {
      {"<array>" + entry("1") + "</array>",
       "has an array on top: an archive made with ioreg -r has no root"},
      {"<array/>", "has an array on top: an archive made with ioreg -r has no root"},
      {"<string>x</string>", "has no dictionary on top"},
      {"<dict/>", "the root has no IORegistryEntryID"},
      {"<dict>" + text("$archiver", "Archiver") + "<key>$objects</key><array/></dict>",
       "was saved by a registry browser: use what 'ioreg -a -l -w0 -i' prints instead"},
      {"<dict>" + plain + "</dict>", "the root has no IORegistryEntryID"},
      {"<dict>" + plain + text("IORegistryEntryID", "1") + "</dict>",
       "the root has an IORegistryEntryID that is no integer"},
      {"<dict>" + plain + "<key>IORegistryEntryID</key><real>1</real></dict>",
       "the root has an IORegistryEntryID that is no integer"},
      {entry("0"), "the root has the IORegistryEntryID 0"},
      {"<dict><key>IORegistryEntryID</key><integer>255</integer></dict>",
       "entry 0xff has no IOObjectClass"},
      {"<dict><key>IORegistryEntryID</key><integer>1</integer><key>IOObjectClass</key><true/></"
       "dict>",
       "entry 0x1 has an IOObjectClass that is no string"},
      {"<dict><key>IORegistryEntryID</key><integer>1</integer>" + text("IOObjectClass", "") +
           "</dict>",
       "entry 0x1 has no IOObjectClass"},
      {entry("1", "<key>IORegistryEntryName</key><integer>1</integer>"),
       "entry 0x1 has an IORegistryEntryName that is no string"},
      {entry("1", "<key>IORegistryEntryLocation</key><integer>1</integer>"),
       "entry 0x1 has an IORegistryEntryLocation that is no string"},
      {entry("1", text("IOServiceState", "30")),
       "entry 0x1 has an IOServiceState that is no integer"},
      {entry("1", text("IOObjectInheritance", "A:B")),
       "entry 0x1 has an IOObjectInheritance that is no array of strings"},
      {entry("1", "<key>IOObjectInheritance</key><array><integer>1</integer></array>"),
       "entry 0x1 has an IOObjectInheritance that is no array of strings"},
      {entry("1", "<key>IORegistryEntryChildren</key>" + entry("2")),
       "entry 0x1 has an IORegistryEntryChildren that is no array"},
      {entry("1", children("<string>x</string>")), "a child of entry 0x1 is no dictionary"},
      {entry("1", children("<dict/>")), "a child of entry 0x1 has no IORegistryEntryID"},
      {entry("1", children(entry("0"))), "a child of entry 0x1 has the IORegistryEntryID 0"},
      {entry("1", children(entry("2") + entry("2", "<key>IOServiceState</key><true/>"))),
       "entry 0x2 has an IOServiceState that is no integer"},
      {entry("1", children(entry("1"))), "entry 0x1 is beneath itself"},
      {entry("1", children(entry("2", children(entry("3", children(entry("2"))))))),
       "entry 0x2 is beneath itself"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(std::string("it: ") + row.reason, reasonAgainst(propertyList(row.list))) << row.list;
    EXPECT_EQ(std::string("it: ") + row.reason, reasonAgainst(binaryTwin(propertyList(row.list))))
        << "binary " << row.list;
  }
}

TEST(ArchiveShape, ACircleThatOnlyMergedPrintsCloseIsRefused) {
  const std::string aOverB = entry("10", children(entry("11")));
  const std::string bOverA = entry("11", children(entry("10")));
  EXPECT_THAT(reasonAgainst(archive(children(aOverB + bOverA))), HasSubstr("is beneath itself"));
  const std::string ring = entry("2", children(entry("3"))) + entry("3", children(entry("4"))) +
                           entry("4", children(entry("2", children(entry("9")))));
  EXPECT_THAT(reasonAgainst(archive(children(ring))), HasSubstr("is beneath itself"));
  // 2 is beneath the circle, and read before it, and yet no part of it.
  const std::string below =
      entry("2") + entry("3", children(entry("4"))) + entry("4", children(entry("3") + entry("2")));
  EXPECT_THAT(
      reasonAgainst(archive(children(below))),
      AnyOf(HasSubstr("entry 0x3 is beneath itself"), HasSubstr("entry 0x4 is beneath itself")));
}
