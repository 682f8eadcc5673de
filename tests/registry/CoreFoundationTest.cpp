#include <array>
#include <cmath>
#include <limits>

#include "platform/registry/IOKitUtilities.h"
#include "tests/registry/RegistryFixture.h"

namespace {

using IOKitUtilities::GetStringFromCFString;

class CoreFoundationTest : public RegistryFixture {
 protected:
  static std::string text(const void* string) {
    return GetStringFromCFString(static_cast<CFStringRef>(string));
  }
  static std::vector<std::string> split(const std::string& whole, const std::string& separator) {
    const auto parts = Value<CFArrayRef>::adopt(CFStringCreateArrayBySeparatingStrings(
        kCFAllocatorDefault, string(whole).get(), string(separator).get()));
    std::vector<std::string> texts;
    for (CFIndex index = 0; index < CFArrayGetCount(parts.get()); ++index) {
      texts.push_back(text(CFArrayGetValueAtIndex(parts.get(), index)));
    }
    return texts;
  }
};

// ---- Numbers

TEST_F(CoreFoundationTest, ANumberThatDoesNotFitIsFalseAndWrittenTruncated) {
  const struct {
    std::int64_t value;
    bool fits;
    std::int32_t written;
  } rows[] = {{0, true, 0},
              {0x7FFFFFFF, true, 0x7FFFFFFF},
              {-0x80000000LL, true, std::numeric_limits<std::int32_t>::min()},
              {0x80000000LL, false, std::numeric_limits<std::int32_t>::min()},
              {0x100000005LL, false, 5},
              {-0x80000001LL, false, 0x7FFFFFFF}};
  for (const auto& row : rows) {
    for (const auto type : {kCFNumberSInt32Type, kCFNumberIntType}) {
      std::int32_t written = 99;
      EXPECT_EQ(row.fits, CFNumberGetValue(cfNumber64(row.value).get(), type, &written) != 0)
          << row.value;
      EXPECT_EQ(row.written, written) << row.value;
    }
  }
}

TEST_F(CoreFoundationTest, ARealNumberReadAsAnIntegerLosesItsFraction) {
  const struct {
    double value;
    bool exact;
    std::int64_t written;
  } rows[] = {{3.0, true, 3},
              {-3.0, true, -3},
              {3.75, false, 3},
              {-3.75, false, -3},
              {1e30, false, std::numeric_limits<std::int64_t>::max()},
              {-1e30, false, std::numeric_limits<std::int64_t>::min()},
              {-9223372036854775808.0, true, std::numeric_limits<std::int64_t>::min()},
              {9223372036854775808.0, false, std::numeric_limits<std::int64_t>::max()},
              {std::numeric_limits<double>::quiet_NaN(), false, 0}};
  for (const auto& row : rows) {
    std::int64_t written = 99;
    EXPECT_EQ(row.exact,
              CFNumberGetValue(real(row.value).get(), kCFNumberSInt64Type, &written) != 0)
        << row.value;
    EXPECT_EQ(row.written, written) << row.value;
  }
}

TEST_F(CoreFoundationTest, AnIntegerReadAsARealIsFalseUnlessExact) {
  const struct {
    std::int64_t value;
    bool exact;
  } rows[] = {{5, true},
              {-5, true},
              {1LL << 53, true},
              {(1LL << 53) + 1, false},
              {std::numeric_limits<std::int64_t>::max(), false},
              {std::numeric_limits<std::int64_t>::min(), true}};
  for (const auto& row : rows) {
    double written = 0;
    EXPECT_EQ(row.exact,
              CFNumberGetValue(cfNumber64(row.value).get(), kCFNumberFloat64Type, &written) != 0)
        << row.value;
    EXPECT_EQ(static_cast<double>(row.value), written);
  }
}

TEST_F(CoreFoundationTest, NumbersAreTheSameKeyByValueAcrossTypesAndBooleansAreNot) {
  const auto dictionary = RegistryFixture::dictionary();
  CFDictionarySetValue(dictionary.get(), cfNumber32(7).get(), CFSTR("seven"));
  CFDictionarySetValue(dictionary.get(), cfNumber64(-1).get(), CFSTR("minus one"));
  CFDictionarySetValue(dictionary.get(), cfNumber64(1).get(), CFSTR("one"));
  CFDictionarySetValue(dictionary.get(), real(2.5).get(), CFSTR("real"));
  const auto found = [&dictionary](CFTypeRef key) {
    return text(CFDictionaryGetValue(dictionary.get(), key));
  };
  EXPECT_EQ("seven", found(cfNumber64(7).get()));
  EXPECT_EQ("seven", found(real(7.0).get()));
  EXPECT_EQ("minus one", found(cfNumber32(-1).get()));
  EXPECT_EQ("real", found(real(2.5).get()));
  EXPECT_EQ("", found(real(7.5).get()));
  EXPECT_EQ("", found(cfNumber64(0xFFFFFFFFLL).get()));
  MemoryRegistry::setProperty(root, "Yes", true);
  EXPECT_EQ("", found(propertyOf(root, "Yes").get()));
}

TEST_F(CoreFoundationTest, AWholeNumberFindsTheRealOfItsValueAndNoOther) {
  const auto dictionary = RegistryFixture::dictionary();
  CFDictionarySetValue(dictionary.get(), real(3.0).get(), CFSTR("three"));
  CFDictionarySetValue(dictionary.get(), real(0.5).get(), CFSTR("a half"));
  EXPECT_EQ("three", text(CFDictionaryGetValue(dictionary.get(), cfNumber64(3).get())));
  EXPECT_EQ("", text(CFDictionaryGetValue(dictionary.get(), cfNumber64(0).get())));
}

TEST_F(CoreFoundationTest, YesAndNoAreDifferentKeysAlsoWithinOthers) {
  using MemoryRegistry::Array;
  MemoryRegistry::setProperty(root, "Yes", Array{true});
  MemoryRegistry::setProperty(root, "No", Array{false});
  const auto dictionary = RegistryFixture::dictionary();
  CFDictionarySetValue(dictionary.get(), propertyOf(root, "Yes").get(), CFSTR("yes"));
  EXPECT_EQ("yes", text(CFDictionaryGetValue(dictionary.get(), propertyOf(root, "Yes").get())));
  EXPECT_EQ("", text(CFDictionaryGetValue(dictionary.get(), propertyOf(root, "No").get())));
}

// ---- Strings

TEST_F(CoreFoundationTest, AStringIsUTF8InItsShortestFormWithoutSurrogates) {
  for (const char* text :
       {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(string(text)) << text;
  }
  for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x7F", "\xC2\xC0",
                           "\xDF", "\xE0\x9F\xBF", "\xE0\xA0", "\xE0\xA0\x7F", "\xED\xA0\x80",
                           "\xED\xBF\xBF", "\xEF\xBF", "\xF0\x8F\xBF\xBF", "\xF0\x90\x80",
                           "\xF4\x90\x80\x80", "\xF7\xBF\xBF\xBF", "\xF8\x90\x80\x80"}) {
    EXPECT_FALSE(string(text)) << text;
    EXPECT_FALSE(string("a" + std::string(text) + "z")) << text;
  }
}

TEST_F(CoreFoundationTest, ConstantStringsAreOneObjectForOneTextAndOffTheAccounts) {
  const CFStringRef constant = CFSTR("a constant");
  EXPECT_EQ(constant, CFSTR("a constant"));
  EXPECT_NE(constant, CFSTR("another"));
  CFRelease(constant);
  CFRelease(constant);
  CFRetain(constant);
  EXPECT_EQ("a constant", text(constant));
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

TEST_F(CoreFoundationTest, ConstantStringsGoByTextEvenWhereTheAddressIsTheSame) {
  std::array<char, 8> buffer{"first"};
  const CFStringRef first = __CFStringMakeConstantString(buffer.data());
  buffer[0] = 'w';
  const CFStringRef second = __CFStringMakeConstantString(buffer.data());
  EXPECT_NE(first, second);
  EXPECT_EQ("wirst", text(second));
}

TEST_F(CoreFoundationTest, AStringIsMadeOfValidUTF8Alone) {
  EXPECT_EQ(nullptr, CFStringCreateWithCString(kCFAllocatorDefault, "\xFF", kCFStringEncodingUTF8));
  EXPECT_EQ(nullptr, CFStringCreateWithCString(kCFAllocatorDefault, "x", 0x0600));
  EXPECT_EQ("\xC3\xA9", text(string("\xC3\xA9").get()));
}

TEST_F(CoreFoundationTest, LengthsAreInUTF16CodeUnits) {
  const struct {
    const char* text;
    CFIndex length;
  } rows[] = {{"", 0}, {"abc", 3}, {"\xC3\xA9", 1}, {"\xE2\x82\xAC", 1}, {"\xF0\x9F\x98\x80", 2}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.length, CFStringGetLength(string(row.text).get())) << row.text;
  }
  EXPECT_EQ(30, CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF8));
  EXPECT_EQ(-1, CFStringGetMaximumSizeForEncoding(10, 0x0600));
  EXPECT_EQ(-1, CFStringGetMaximumSizeForEncoding(std::numeric_limits<CFIndex>::max(),
                                                  kCFStringEncodingUTF8));
}

TEST_F(CoreFoundationTest, StringsAreComparedByUTF16CodeUnits) {
  const struct {
    const char* a;
    const char* b;
    CFComparisonResult order;
  } rows[] = {
      {"", "", kCFCompareEqualTo},
      {"a", "a", kCFCompareEqualTo},
      {"a", "b", kCFCompareLessThan},
      {"b", "a", kCFCompareGreaterThan},
      {"a", "ab", kCFCompareLessThan},
      {"ab", "a", kCFCompareGreaterThan},
      {"A", "a", kCFCompareLessThan},
      {"z", "\xC3\xA9", kCFCompareLessThan},
      {"\xC3\xA9", "\xC3\xA8", kCFCompareGreaterThan},
      // U+1F600 begins with 0xD83D, which is below U+FFFD
      {"\xF0\x9F\x98\x80", "\xEF\xBF\xBD", kCFCompareLessThan},
      {"\xEF\xBF\xBD", "\xF0\x9F\x98\x80", kCFCompareGreaterThan},
      {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x81", kCFCompareLessThan},
      {"\xF0\x9F\x98\x80", "\xE2\x82\xAC", kCFCompareGreaterThan},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.order, CFStringCompare(string(row.a).get(), string(row.b).get(), 0))
        << row.a << " " << row.b;
  }
}

TEST_F(CoreFoundationTest, TheEmptyStringIsNobodysPrefix) {
  const struct {
    const char* text;
    const char* prefix;
    bool is;
  } rows[] = {{"pci1b4b", "pci1b", true}, {"pci1b", "pci1b", true},
              {"pci1", "pci1b", false},   {"PCI1b4b", "pci1b", false},
              {"x", "", false},           {"", "", false},
              {"xpci1b", "pci1b", false}, {"\xC3\xA9t", "\xC3\xA9", true}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.is, CFStringHasPrefix(string(row.text).get(), string(row.prefix).get()) != 0)
        << row.text << " " << row.prefix;
  }
}

TEST_F(CoreFoundationTest, EverySeparatorMakesOnePartMore) {
  const struct {
    const char* whole;
    const char* separator;
    std::vector<std::string> parts;
  } rows[] = {{"", "/", {""}},
              {"/a/", "/", {"", "a", ""}},
              {"a//b", "/", {"a", "", "b"}},
              {"/", "/", {"", ""}},
              {"abc", "/", {"abc"}},
              {"abc", "", {"abc"}},
              {"", "", {""}},
              {"a--b-c", "--", {"a", "b-c"}},
              {"\xC3\xA9/\xC3\xA8", "/", {"\xC3\xA9", "\xC3\xA8"}}};
  for (const auto& row : rows)
    EXPECT_EQ(row.parts, split(row.whole, row.separator)) << row.whole;
}

TEST_F(CoreFoundationTest, BytesAreConvertedByWholeCharactersAsFarAsTheBufferGoes) {
  const auto mixed = string("a\xC3\xA9\xF0\x9F\x98\x80z");  // 1, 1, 2 and 1 code units
  const struct {
    CFRange range;
    UInt8 loss;
    CFIndex capacity;
    CFIndex converted;
    const char* bytes;
  } rows[] = {
      {{0, 5}, 0, 16, 5, "a\xC3\xA9\xF0\x9F\x98\x80z"},
      {{0, 5}, 0, 8, 5, "a\xC3\xA9\xF0\x9F\x98\x80z"},
      {{0, 5}, 0, 7, 4, "a\xC3\xA9\xF0\x9F\x98\x80"},
      {{0, 5}, 0, 6, 2, "a\xC3\xA9"},
      {{0, 5}, 0, 2, 1, "a"},
      {{0, 5}, 0, 0, 0, ""},
      {{1, 1}, 0, 16, 1, "\xC3\xA9"},
      {{2, 2}, 0, 16, 2, "\xF0\x9F\x98\x80"},
      {{0, 3}, 0, 16, 2, "a\xC3\xA9"},  // half of the pair can't be said
      {{0, 3}, '?', 16, 3, "a\xC3\xA9?"},
      {{3, 2}, '?', 16, 2, "?z"},
      {{3, 2}, 0, 16, 0, ""},
      {{5, 0}, 0, 16, 0, ""},
  };
  for (const auto& row : rows) {
    std::array<UInt8, 16> buffer{};
    CFIndex used = -1;
    EXPECT_EQ(row.converted, CFStringGetBytes(mixed.get(), row.range, kCFStringEncodingUTF8,
                                              row.loss, 0, buffer.data(), row.capacity, &used));
    EXPECT_EQ(row.bytes, std::string(buffer.begin(), buffer.begin() + used))
        << row.range.location << "+" << row.range.length << " into " << row.capacity;
  }
}

TEST_F(CoreFoundationTest, BytesAreOnlyCountedWithoutABuffer) {
  CFIndex used = 0;
  for (const std::string& whole : {std::string("plain"), std::string("\xC3\xA9t\xC3\xA9")}) {
    const auto from = string(whole);
    const CFIndex length = CFStringGetLength(from.get());
    EXPECT_EQ(length, CFStringGetBytes(from.get(), CFRangeMake(0, length), kCFStringEncodingUTF8, 0,
                                       0, nullptr, 0, &used));
    EXPECT_EQ(static_cast<CFIndex>(whole.size()), used);
  }
}

TEST_F(CoreFoundationTest, PlainTextIsConvertedInPartsToo) {
  const auto from = string("abcdef");
  std::array<UInt8, 4> buffer{};
  CFIndex used = 0;
  EXPECT_EQ(4, CFStringGetBytes(from.get(), CFRangeMake(1, 5), kCFStringEncodingUTF8, 0, 0,
                                buffer.data(), 4, &used));
  EXPECT_EQ("bcde", std::string(buffer.begin(), buffer.begin() + used));
  EXPECT_EQ(
      0, CFStringGetBytes(from.get(), CFRangeMake(0, 6), 0x0600, 0, 0, buffer.data(), 4, nullptr));
}

// ---- Collections

TEST_F(CoreFoundationTest, AnArrayRetainsWhatItHolds) {
  auto value = string("x");
  const auto array = RegistryFixture::array({value.get()});
  value.reset();
  EXPECT_EQ(1, CFArrayGetCount(array.get()));
  EXPECT_EQ("x", text(CFArrayGetValueAtIndex(array.get(), 0)));
  EXPECT_EQ(2U, MemoryRegistry::accounts().values);
}

TEST_F(CoreFoundationTest, WithoutCallBacksACollectionNeitherRetainsNorCompares) {
  const auto value = string("x");
  const auto same = string("x");
  CFTypeRef values[] = {value.get()};
  const auto array =
      Value<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, values, 1, nullptr));
  EXPECT_EQ(value.get(), CFArrayGetValueAtIndex(array.get(), 0));
  const auto dictionary = Value<CFMutableDictionaryRef>::adopt(
      CFDictionaryCreateMutable(kCFAllocatorDefault, 0, nullptr, nullptr));
  CFDictionarySetValue(dictionary.get(), value.get(), nullptr);
  CFDictionarySetValue(dictionary.get(), value.get(), same.get());
  EXPECT_EQ(same.get(), CFDictionaryGetValue(dictionary.get(), value.get()));
  EXPECT_EQ(nullptr, CFDictionaryGetValue(dictionary.get(), same.get()));
}

TEST_F(CoreFoundationTest, SettingAKeyAgainKeepsTheOldKeyAndReplacesTheValue) {
  auto oldKey = string("key");
  auto newKey = string("key");
  auto oldValue = string("old");
  auto newValue = string("new");
  const auto dictionary = RegistryFixture::dictionary({{oldKey.get(), oldValue.get()}});
  oldKey.reset();
  oldValue.reset();
  EXPECT_EQ(5U, MemoryRegistry::accounts().values);
  CFDictionarySetValue(dictionary.get(), newKey.get(), newValue.get());
  EXPECT_EQ(4U, MemoryRegistry::accounts().values);  // the old value went, the old key stayed
  newKey.reset();
  EXPECT_EQ(3U, MemoryRegistry::accounts().values);
  EXPECT_EQ("new", text(CFDictionaryGetValue(dictionary.get(), CFSTR("key"))));
  CFDictionarySetValue(dictionary.get(), CFSTR("key"), newValue.get());
  newValue.reset();
  EXPECT_EQ("new", text(CFDictionaryGetValue(dictionary.get(), CFSTR("key"))));
}

TEST_F(CoreFoundationTest, CollectionsAndDataAreTheSameKeyByContent) {
  using MemoryRegistry::Array;
  using MemoryRegistry::Dictionary;
  const struct {
    MemoryRegistry::PropertyValue value;
    MemoryRegistry::PropertyValue other;
  } rows[] = {{Array{"a", 1}, Array{"a", 2}},
              {Dictionary{{"a", 1}}, Dictionary{{"b", 1}}},
              {Dictionary{{"a", 1}}, Dictionary{{"a", 2}}},
              {MemoryRegistry::Data{1, 2}, MemoryRegistry::Data{1, 3}}};
  for (const auto& row : rows) {
    MemoryRegistry::setProperty(root, "Value", row.value);
    MemoryRegistry::setProperty(root, "Other", row.other);
    const auto dictionary = RegistryFixture::dictionary();
    CFDictionarySetValue(dictionary.get(), propertyOf(root, "Value").get(), CFSTR("found"));
    EXPECT_EQ("found",
              text(CFDictionaryGetValue(dictionary.get(), propertyOf(root, "Value").get())));
    EXPECT_EQ("", text(CFDictionaryGetValue(dictionary.get(), propertyOf(root, "Other").get())));
  }
  MemoryRegistry::setProperty(root, "Date", MemoryRegistry::Opaque{});
  const auto date = propertyOf(root, "Date");
  const auto dates = RegistryFixture::dictionary();
  CFDictionarySetValue(dates.get(), date.get(), CFSTR("found"));
  EXPECT_EQ("found", text(CFDictionaryGetValue(dates.get(), date.get())));
  EXPECT_EQ("", text(CFDictionaryGetValue(dates.get(), propertyOf(root, "Date").get())));
}

TEST_F(CoreFoundationTest, EveryPartOfASplitStringIsAValueOfTheArray) {
  const auto parts = Value<CFArrayRef>::adopt(
      CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, CFSTR("a/b"), CFSTR("/")));
  EXPECT_EQ(3U, MemoryRegistry::accounts().values);
}

TEST_F(CoreFoundationTest, ReferencesAreCounted) {
  auto value = string("x");
  CFRetain(value.get());
  CFRelease(value.get());
  EXPECT_EQ("x", text(value.get()));
  EXPECT_EQ(1U, MemoryRegistry::accounts().values);
  value.reset();
  EXPECT_EQ(0U, MemoryRegistry::accounts().values);
}

}  // namespace
