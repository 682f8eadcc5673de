#include <limits>

#include "platform/registry/IOKitUtilities.h"
#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::number32;
using MemoryRegistry::number64;
using MemoryRegistry::setProperty;

class PropertyTest : public RegistryFixture {
 protected:
  const EntryID entry = add(root, "Entry");

  static std::int64_t integer(CFTypeRef number) {
    std::int64_t value = 0;
    EXPECT_TRUE(CFNumberGetValue(static_cast<CFNumberRef>(number), kCFNumberLongLongType, &value));
    return value;
  }
  static std::string text(CFTypeRef string) {
    return IOKitUtilities::GetStringFromCFString(static_cast<CFStringRef>(string));
  }
};

TEST_F(PropertyTest, AMissingPropertyIsNull) {
  EXPECT_FALSE(propertyOf(entry, "Nothing"));
  setProperty(entry, "Key", 1);
  EXPECT_FALSE(propertyOf(entry, "key"));
  EXPECT_TRUE(propertyOf(entry, "Key"));
  MemoryRegistry::removeProperty(entry, "Key");
  EXPECT_FALSE(propertyOf(entry, "Key"));
  MemoryRegistry::removeProperty(entry, "NeverHeardOf");
}

TEST_F(PropertyTest, RemovingOneThatIsNotThereLeavesTheOthers) {
  constexpr CFIndex count = 10;
  const auto key = [](CFIndex number) { return "Key " + std::to_string(number); };
  for (CFIndex number = 0; number < count; ++number)
    setProperty(entry, key(number), 1);
  for (CFIndex number = 0; number < count; ++number) {
    MemoryRegistry::removeProperty(entry, key(number));
    MemoryRegistry::removeProperty(entry, key(number));
    CFMutableDictionaryRef left = nullptr;
    IORegistryEntryCreateCFProperties(handleOf(entry).get(), &left, kCFAllocatorDefault, 0);
    EXPECT_EQ(count - number - 1,
              CFDictionaryGetCount(Value<CFMutableDictionaryRef>::adopt(left).get()));
  }
}

TEST_F(PropertyTest, NumbersOfUpTo32BitsAreSigned32BitNumbersAndWiderOnesSigned64BitNumbers) {
  const struct {
    MemoryRegistry::Number stored;
    std::int64_t read;
  } rows[] = {
      {{0xFF, 8}, 255},
      {{0x1FF, 8}, 255},
      {{0xFFFF, 16}, 65535},
      {number32(0x7FFFFFFFU), 0x7FFFFFFF},
      {number32(0x80000000U), std::numeric_limits<std::int32_t>::min()},
      {number32(0xFFFFFFFFU), -1},
      {{0xFFFFFFFFFFU, 32}, -1},
      {number64(5), 5},
      {number64(0x80000000U), 0x80000000LL},
      {number64(0x8000000000000000U), std::numeric_limits<std::int64_t>::min()},
      {number64(UINT64_MAX), -1},
      {{0xFFFFFFFFFFU, 33}, 0x1FFFFFFFFLL},
  };
  for (const auto& row : rows) {
    setProperty(entry, "Number", row.stored);
    const auto value = propertyOf(entry, "Number");
    ASSERT_EQ(CFNumberGetTypeID(), CFGetTypeID(value.get()));
    EXPECT_EQ(row.read, integer(value.get())) << row.stored.bits << "/" << row.stored.width;
  }
}

TEST_F(PropertyTest, RealNumbersStayReal) {
  setProperty(entry, "Real", 2.5);
  double value = 0;
  EXPECT_TRUE(CFNumberGetValue(static_cast<CFNumberRef>(propertyOf(entry, "Real").get()),
                               kCFNumberFloat64Type, &value));
  EXPECT_EQ(2.5, value);
}

TEST_F(PropertyTest, BooleansAreConstantsThatAreNoNumbers) {
  setProperty(entry, "Yes", true);
  setProperty(entry, "AlsoYes", true);
  setProperty(entry, "No", false);
  const auto yes = propertyOf(entry, "Yes");
  EXPECT_EQ(yes.get(), propertyOf(entry, "AlsoYes").get());
  EXPECT_NE(yes.get(), propertyOf(entry, "No").get());
  EXPECT_NE(CFNumberGetTypeID(), CFGetTypeID(yes.get()));
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

TEST_F(PropertyTest, StringsAreUTF8OrElseMacRoman) {
  const struct {
    std::string stored;
    std::string read;
  } rows[] = {
      {"plain", "plain"},
      {"", ""},
      {"\xC3\xA9t\xC3\xA9", "\xC3\xA9t\xC3\xA9"},
      {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
      {"\x8Et\x8E", "\xC3\xA9t\xC3\xA9"},                       // MacRoman
      {"\xDB", "\xE2\x82\xAC"},                                 // MacRoman's euro
      {"\xC3", "\xE2\x88\x9A"},                                 // cut off: MacRoman
      {"\xC0\x80", "\xC2\xBF\xC3\x84"},                         // longer than need be
      {"\xED\xA0\x80", "\xC3\x8C\xE2\x80\xA0\xC3\x84"},         // half of a surrogate pair
      {"\xF4\x90\x80\x80", "\xC3\x99\xC3\xAA\xC3\x84\xC3\x84"}  // beyond Unicode
  };
  for (const auto& row : rows) {
    setProperty(entry, "Text", row.stored);
    EXPECT_EQ(row.read, text(propertyOf(entry, "Text").get()));
  }
}

// As Python's codec mac_roman has it.
TEST_F(PropertyTest, EachCharacterOfMacRomanIsItsOwn) {
  const std::string upperHalf =
      "ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
      "†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
      "¿¡¬√ƒ≈∆«»…\xC2\xA0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
      "‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\xEF\xA3\xBFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
  std::string read;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    setProperty(entry, "Text", std::string(1, static_cast<char>(byte)));
    read += text(propertyOf(entry, "Text").get());
  }
  EXPECT_EQ(upperHalf, read);
}

TEST_F(PropertyTest, EveryReadIsAFreshCopyOfItsOwn) {
  setProperty(entry, "Array", MemoryRegistry::Array{"a", number64(1)});
  const auto first = propertyOf(entry, "Array");
  const auto second = propertyOf(entry, "Array");
  EXPECT_NE(first.get(), second.get());
  const auto* values = static_cast<CFArrayRef>(first.get());
  EXPECT_NE(CFArrayGetValueAtIndex(values, 0),
            CFArrayGetValueAtIndex(static_cast<CFArrayRef>(second.get()), 0));
  EXPECT_EQ(6U, MemoryRegistry::accounts().values);
  setProperty(entry, "Array", MemoryRegistry::Array{});
  EXPECT_EQ("a", text(CFArrayGetValueAtIndex(values, 0)));
  MemoryRegistry::terminate(entry);
  EXPECT_EQ(2, CFArrayGetCount(values));
}

TEST_F(PropertyTest, ChangingADictionaryThatWasReadChangesNothingInTheRegistry) {
  setProperty(entry, "Dictionary", MemoryRegistry::Dictionary{{"k", "v"}});
  const auto read = propertyOf(entry, "Dictionary");
  auto* const dictionary =
      const_cast<CFMutableDictionaryRef>(static_cast<CFDictionaryRef>(read.get()));
  CFDictionarySetValue(dictionary, CFSTR("k"), CFSTR("other"));
  const auto again = propertyOf(entry, "Dictionary");
  EXPECT_EQ("v", text(CFDictionaryGetValue(static_cast<CFDictionaryRef>(again.get()), CFSTR("k"))));
}

TEST_F(PropertyTest, NestedValuesAreCopiedWhole) {
  using MemoryRegistry::Array;
  using MemoryRegistry::Dictionary;
  setProperty(entry, "Boot", Array{Dictionary{{"Path", "IODeviceTree:/x"}, {"Size", number64(7)}}});
  const auto boot = propertyOf(entry, "Boot");
  ASSERT_EQ(CFArrayGetTypeID(), CFGetTypeID(boot.get()));
  const auto* item =
      static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(static_cast<CFArrayRef>(boot.get()), 0));
  ASSERT_EQ(CFDictionaryGetTypeID(), CFGetTypeID(item));
  EXPECT_EQ("IODeviceTree:/x", text(CFDictionaryGetValue(item, CFSTR("Path"))));
  EXPECT_EQ(7, integer(CFDictionaryGetValue(item, CFSTR("Size"))));
  EXPECT_EQ(nullptr, CFDictionaryGetValue(item, CFSTR("Nothing")));
}

TEST_F(PropertyTest, OfAKeyGivenTwiceTheLastOneHolds) {
  using MemoryRegistry::Dictionary;
  MemoryRegistry::EntryDescription description;
  description.className = "IOService";
  description.properties = {{"k", "first"}, {"l", "other"}, {"k", "second"}};
  const EntryID twice = MemoryRegistry::add(root, description);
  EXPECT_EQ("second", text(propertyOf(twice, "k").get()));
  EXPECT_EQ("other", text(propertyOf(twice, "l").get()));
  setProperty(entry, "D", Dictionary{{"k", "first"}, {"k", "second"}});
  const auto read = propertyOf(entry, "D");
  EXPECT_EQ("second",
            text(CFDictionaryGetValue(static_cast<CFDictionaryRef>(read.get()), CFSTR("k"))));
}

TEST_F(PropertyTest, WhatCannotBeReadIsPresentAndOfNoKnownType) {
  setProperty(entry, "Date", MemoryRegistry::Opaque{});
  setProperty(entry, "Data", MemoryRegistry::Data{1, 2, 3});
  for (const char* key : {"Date", "Data"}) {
    const auto value = propertyOf(entry, key);
    ASSERT_TRUE(value) << key;
    for (const CFTypeID known :
         {CFStringGetTypeID(), CFNumberGetTypeID(), CFArrayGetTypeID(), CFDictionaryGetTypeID()}) {
      EXPECT_NE(known, CFGetTypeID(value.get())) << key;
    }
  }
}

TEST_F(PropertyTest, AKeyOfMoreThan127CharactersOrBeyondASCIIIsMissing) {
  const std::string longest(127, 'k');
  for (const std::string& key : {longest, longest + "k", std::string("caf\xC3\xA9")}) {
    setProperty(entry, key, 1);
  }
  EXPECT_TRUE(propertyOf(entry, longest));
  EXPECT_FALSE(propertyOf(entry, longest + "k"));
  EXPECT_FALSE(propertyOf(entry, "caf\xC3\xA9"));
  const auto handle = handleOf(entry);
  EXPECT_EQ(nullptr, IORegistryEntryCreateCFProperty(handle.get(), CFSTR("caf\xC3\xA9"),
                                                     kCFAllocatorDefault, 0));
}

TEST_F(PropertyTest, ManyPropertiesAreAllFound) {
  for (int key = 0; key < 200; ++key)
    setProperty(entry, "Key " + std::to_string(key), key);
  for (int key = 0; key < 200; ++key) {
    EXPECT_EQ(key, integer(propertyOf(entry, "Key " + std::to_string(key)).get()));
  }
}

}  // namespace
