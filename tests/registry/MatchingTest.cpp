#include <cstring>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::number32;
using MemoryRegistry::number64;
using MemoryRegistry::setProperty;
using MemoryRegistry::setState;
using MemoryRegistry::Settled;

class MatchingTest : public RegistryFixture {
 protected:
  using Dictionary = Value<CFMutableDictionaryRef>;

  const EntryID top = add(root, "Top");

  static EntryID found(Dictionary matching) {
    const auto entry =
        Handle::adopt(IOServiceGetMatchingService(kIOMasterPortDefault, matching.release()));
    return MemoryRegistry::entryOf(entry.get());
  }
  static Dictionary ofClass(const char* name) {
    const auto text = string(name);
    return dictionary({{CFSTR("IOProviderClass"), text.get()}});
  }
  static EntryID withProperty(const char* key, CFTypeRef value) {
    const auto name = string(key);
    const auto wanted = dictionary({{name.get(), value}});
    return found(dictionary({{CFSTR("IOPropertyMatch"), wanted.get()}}));
  }
};

TEST_F(MatchingTest, NullFindsNothing) {
  EXPECT_EQ(0U, IOServiceGetMatchingService(kIOMasterPortDefault, nullptr));
}

TEST_F(MatchingTest, ConsumesOneReferenceWhetherItFindsOrNot) {
  for (const char* name : {"IOService", "Nobody"}) {
    const auto matching = ofClass(name);
    CFRetain(matching.get());
    const auto entry =
        Handle::adopt(IOServiceGetMatchingService(kIOMasterPortDefault, matching.get()));
    EXPECT_EQ(2U, MemoryRegistry::accounts().values) << name;  // the dictionary and its class
  }
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

TEST_F(MatchingTest, FindsAClassAndEverythingDerivedFromIt) {
  const EntryID mirror = add(top, "Set", "AppleRAIDMirrorSet");
  for (const char* name : {"AppleRAIDMirrorSet", "AppleRAIDSet", "AppleRAIDMember", "IOStorage"}) {
    EXPECT_EQ(mirror, found(ofClass(name))) << name;
  }
  EXPECT_EQ(0U, found(ofClass("AppleRAIDStripeSet")));
  EXPECT_EQ(0U, found(ofClass("NoSuchClassAtAll")));
  EXPECT_EQ(top, found(ofClass("IOService")));
}

TEST_F(MatchingTest, TheLowestIDComesFirst) {
  const EntryID late = add(top, "Late", "IOMedia");
  const EntryID later = add(top, "Later", "IOMedia");
  EXPECT_EQ(late, found(ofClass("IOMedia")));
  MemoryRegistry::detach(late, top);
  MemoryRegistry::attach(late, top);
  EXPECT_EQ(late, found(ofClass("IOMedia")));
  MemoryRegistry::terminate(late);
  EXPECT_EQ(later, found(ofClass("IOMedia")));
}

TEST_F(MatchingTest, TheEmptyDictionaryFindsTheFirstService) {
  EXPECT_EQ(top, found(dictionary()));
}

TEST_F(MatchingTest, OnlyRegisteredAndMatchedServicesThatAreActiveAreFound) {
  const EntryID media = add(top, "Media", "IOMedia");
  const struct {
    std::uint32_t state;
    bool isFound;
  } rows[] = {{Settled, true}, {30, true}, {6, true},   {2, false},   {4, false},
              {0, false},      {7, false}, {31, false}, {0x18, false}};
  EXPECT_EQ(media, found(ofClass("IOMedia")));  // without a state: settled
  for (const auto& row : rows) {
    setState(media, row.state);
    EXPECT_EQ(row.isFound ? media : 0, found(ofClass("IOMedia"))) << row.state;
  }
}

TEST_F(MatchingTest, WhatIsNoServiceIsNeverFound) {
  add(top, "Node", "IORegistryEntry");
  EXPECT_EQ(top, found(ofClass("IORegistryEntry")));
  MemoryRegistry::terminate(top);
  EXPECT_EQ(0U, found(ofClass("IORegistryEntry")));
  EXPECT_EQ(0U, found(dictionary()));
}

TEST_F(MatchingTest, AProviderClassThatIsNoStringFindsNothing) {
  const auto number = cfNumber32(1);
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOProviderClass"), number.get()}})));
}

TEST_F(MatchingTest, EveryKeyOfThePropertyMatchMustBeEqual) {
  setProperty(top, "A", "x");
  setProperty(top, "B", "y");
  const auto x = string("x");
  const auto y = string("y");
  const auto both = dictionary({{CFSTR("A"), x.get()}, {CFSTR("B"), y.get()}});
  const auto wrong = dictionary({{CFSTR("A"), x.get()}, {CFSTR("B"), x.get()}});
  const auto missing = dictionary({{CFSTR("A"), x.get()}, {CFSTR("C"), y.get()}});
  EXPECT_EQ(top, found(dictionary({{CFSTR("IOPropertyMatch"), both.get()}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyMatch"), wrong.get()}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyMatch"), missing.get()}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyMatch"), x.get()}})));
}

TEST_F(MatchingTest, OfSeveralPropertyMatchesAnyOneSuffices) {
  setProperty(top, "A", "x");
  const auto x = string("x");
  const auto y = string("y");
  const auto right = dictionary({{CFSTR("A"), x.get()}});
  const auto wrong = dictionary({{CFSTR("A"), y.get()}});
  const auto either = array({wrong.get(), right.get()});
  const auto neither = array({wrong.get(), y.get()});
  EXPECT_EQ(top, found(dictionary({{CFSTR("IOPropertyMatch"), either.get()}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyMatch"), neither.get()}})));
}

TEST_F(MatchingTest, NumbersAreEqualByTheirZeroExtendedValueWhateverTheirWidth) {
  const struct {
    MemoryRegistry::Number stored;
    bool is64;
    std::int64_t asked;
    bool equal;
  } rows[] = {
      {number32(5), false, 5, true},
      {number32(5), true, 5, true},
      {number64(5), false, 5, true},
      {{5, 8}, true, 5, true},
      {{0x105, 8}, true, 5, true},
      {{0xFF, 8}, true, -1, false},
      {{0xFF, 8}, true, 255, true},
      {number64(0x8000000000000001U), true, static_cast<std::int64_t>(0x8000000000000001U), true},
      {number64(UINT64_MAX), true, -1, true},
      {number32(0xFFFFFFFFU), false, -1, true},
      {number64(UINT64_MAX), false, -1, false},
      {number64(0xFFFFFFFFU), false, -1, true},
      {number32(0xFFFFFFFFU), true, -1, false},
      {number64(5), true, 6, false},
  };
  for (const auto& row : rows) {
    setProperty(top, "UID", row.stored);
    const auto asked =
        row.is64 ? cfNumber64(row.asked) : cfNumber32(static_cast<std::int32_t>(row.asked));
    EXPECT_EQ(row.equal ? top : 0, withProperty("UID", asked.get()))
        << row.stored.bits << "/" << row.stored.width << " against " << row.asked;
  }
}

TEST_F(MatchingTest, RealNumbersEqualRealNumbersAlone) {
  setProperty(top, "Key", 1.0);
  EXPECT_EQ(top, withProperty("Key", real(1.0).get()));
  EXPECT_EQ(0U, withProperty("Key", real(1.5).get()));
  EXPECT_EQ(0U, withProperty("Key", cfNumber64(1).get()));
  setProperty(top, "Key", number64(1));
  EXPECT_EQ(0U, withProperty("Key", real(1.0).get()));
}

TEST_F(MatchingTest, BooleansNeverEqualNumbers) {
  setProperty(top, "Key", true);
  setProperty(top, "Same", true);
  setProperty(top, "Other", false);
  EXPECT_EQ(0U, withProperty("Key", cfNumber32(1).get()));
  EXPECT_EQ(top, withProperty("Key", propertyOf(top, "Same").get()));
  EXPECT_EQ(0U, withProperty("Key", propertyOf(top, "Other").get()));
}

TEST_F(MatchingTest, StringsAreEqualBytewiseAndAlsoToDataWithTheirBytes) {
  const auto bytes = [](const std::string& text) {
    return MemoryRegistry::Data(text.begin(), text.end());
  };
  using namespace std::string_literals;
  setProperty(top, "Text", "abc");
  setProperty(top, "Data", bytes("abc"));
  setProperty(top, "Ended", bytes("abc\0"s));
  setProperty(top, "Twice", bytes("abc\0\0"s));
  setProperty(top, "Empty", bytes(""));
  EXPECT_EQ(top, withProperty("Text", string("abc").get()));
  EXPECT_EQ(0U, withProperty("Text", string("Abc").get()));
  EXPECT_EQ(0U, withProperty("Text", string("ab").get()));
  EXPECT_EQ(top, withProperty("Data", string("abc").get()));
  EXPECT_EQ(top, withProperty("Ended", string("abc").get()));
  EXPECT_EQ(0U, withProperty("Twice", string("abc").get()));
  EXPECT_EQ(top, withProperty("Empty", string("").get()));
  EXPECT_EQ(top, withProperty("Text", propertyOf(top, "Data").get()));
  EXPECT_EQ(top, withProperty("Text", propertyOf(top, "Ended").get()));
  EXPECT_EQ(top, withProperty("Data", propertyOf(top, "Data").get()));
  EXPECT_EQ(0U, withProperty("Data", propertyOf(top, "Ended").get()));
}

TEST_F(MatchingTest, NestedValuesAreEqualExactly) {
  using MemoryRegistry::Array;
  using MemoryRegistry::Dictionary;
  const Dictionary inner = {{"k", "v"}, {"n", number64(1)}};
  setProperty(top, "D", inner);
  setProperty(top, "Same", inner);
  setProperty(top, "Fewer", Dictionary{{"k", "v"}});
  setProperty(top, "Other", Dictionary{{"k", "v"}, {"n", number64(2)}});
  setProperty(top, "A", Array{"x", "y"});
  setProperty(top, "SameA", Array{"x", "y"});
  setProperty(top, "Turned", Array{"y", "x"});
  setProperty(top, "Opaque", MemoryRegistry::Opaque{});
  EXPECT_EQ(top, withProperty("D", propertyOf(top, "Same").get()));
  EXPECT_EQ(0U, withProperty("D", propertyOf(top, "Fewer").get()));
  EXPECT_EQ(0U, withProperty("Fewer", propertyOf(top, "D").get()));
  EXPECT_EQ(0U, withProperty("D", propertyOf(top, "Other").get()));
  EXPECT_EQ(0U, withProperty("D", string("v").get()));
  EXPECT_EQ(top, withProperty("A", propertyOf(top, "SameA").get()));
  EXPECT_EQ(0U, withProperty("A", propertyOf(top, "Turned").get()));
  EXPECT_EQ(0U, withProperty("A", propertyOf(top, "D").get()));
  EXPECT_EQ(0U, withProperty("Opaque", propertyOf(top, "Opaque").get()));
}

TEST_F(MatchingTest, PropertyExistsMatchAsksForPresenceOfEveryKey) {
  setProperty(top, "A", 1);
  setProperty(top, "B", 2);
  const auto all = array({CFSTR("A"), CFSTR("B")});
  const auto some = array({CFSTR("A"), CFSTR("C")});
  EXPECT_EQ(top, found(dictionary({{CFSTR("IOPropertyExistsMatch"), CFSTR("A")}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyExistsMatch"), CFSTR("C")}})));
  EXPECT_EQ(top, found(dictionary({{CFSTR("IOPropertyExistsMatch"), all.get()}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyExistsMatch"), some.get()}})));
}

TEST_F(MatchingTest, NameMatchIsTheNameOrOneThatItIsCompatibleWith) {
  using namespace std::string_literals;
  const auto matchesName = [this](const char* name) {
    const auto text = string(name);
    return found(dictionary({{CFSTR("IONameMatch"), text.get()}})) == top;
  };
  EXPECT_TRUE(matchesName("Top"));
  EXPECT_FALSE(matchesName("top"));
  const std::string list = "one\0two\0"s;
  setProperty(top, "compatible", MemoryRegistry::Data(list.begin(), list.end()));
  EXPECT_TRUE(matchesName("one"));
  EXPECT_TRUE(matchesName("two"));
  EXPECT_FALSE(matchesName("three"));
  setProperty(top, "compatible", "three");
  EXPECT_TRUE(matchesName("three"));
  const auto several = array({CFSTR("x"), CFSTR("Top")});
  EXPECT_EQ(top, found(dictionary({{CFSTR("IONameMatch"), several.get()}})));
}

TEST_F(MatchingTest, LocationPathAndIDAreComparedWhenTheyAreAskedFor) {
  const EntryID disk = addAt(top, "Disk", "1C");
  EXPECT_EQ(disk, found(dictionary({{CFSTR("IOLocationMatch"), CFSTR("1C")}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOLocationMatch"), CFSTR("1c")}})));
  EXPECT_EQ(disk, found(dictionary({{CFSTR("IOPathMatch"), CFSTR("IOService:/Disk@1c")}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPathMatch"), CFSTR("IOService:/Disk@2")}})));
  const auto id = cfNumber64(static_cast<std::int64_t>(disk));
  EXPECT_EQ(disk, found(dictionary({{CFSTR("IORegistryEntryID"), id.get()}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IORegistryEntryID"), CFSTR("1")}})));
}

TEST_F(MatchingTest, UnknownKeysOfTheDictionaryDoNotRestrict) {
  const EntryID set = add(top, "Set", "AppleRAIDMirrorSet");
  setProperty(set, "AppleRAID-SetUUID", "A");
  const auto other = string("B");
  EXPECT_EQ(set, found(dictionary({{CFSTR("IOProviderClass"), CFSTR("AppleRAIDSet")},
                                   {CFSTR("AppleRAID-SetUUID"), other.get()}})));
}

TEST_F(MatchingTest, MediaAlsoCompareTheirOwnKeysAndAllServicesTheBSDName) {
  const EntryID media = add(top, "Media", "IOMedia");
  setProperty(media, "Content", "Apple_RAID");
  setProperty(media, "BSD Name", "disk2");
  const CFStringRef provider = CFSTR("IOProviderClass");
  EXPECT_EQ(
      media,
      found(dictionary({{provider, CFSTR("IOMedia")}, {CFSTR("Content"), CFSTR("Apple_RAID")}})));
  EXPECT_EQ(
      0U,
      found(dictionary({{provider, CFSTR("IOMedia")}, {CFSTR("Content"), CFSTR("Apple_HFS")}})));
  EXPECT_EQ(top, found(dictionary({{CFSTR("Content"), CFSTR("Apple_HFS")}})));
  EXPECT_EQ(media, found(dictionary({{CFSTR("BSD Name"), CFSTR("disk2")}})));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("BSD Name"), CFSTR("disk3")}})));
}

TEST_F(MatchingTest, KeysThatAreNoStringsDoNotRestrict) {
  const auto key = cfNumber32(1);
  const auto matching = dictionary();
  CFDictionarySetValue(matching.get(), key.get(), CFSTR("x"));
  CFRetain(matching.get());
  EXPECT_EQ(top, found(Dictionary::adopt(matching.get())));
  const auto properties = dictionary();
  CFDictionarySetValue(properties.get(), key.get(), CFSTR("x"));
  EXPECT_EQ(0U, found(dictionary({{CFSTR("IOPropertyMatch"), properties.get()}})));
}

TEST_F(MatchingTest, GivesOneReference) {
  const auto entry =
      Handle::adopt(IOServiceGetMatchingService(kIOMasterPortDefault, dictionary().release()));
  EXPECT_EQ(1U, MemoryRegistry::references(top));
}

}  // namespace
