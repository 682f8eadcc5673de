#include <functional>

#include "tests/registry/RegistryFixture.h"

namespace {

// What crashes on the operating system is a mistake of the program: it ends with one line that
// names the operation.
class TrapDeathTest : public RegistryFixture {
 protected:
  struct Row {
    const char* operation;
    std::function<void()> mistake;
  };
  static void expectDeath(const std::vector<Row>& rows) {
    GTEST_FLAG_SET(death_test_style, "fast");
    for (const Row& row : rows) {
      EXPECT_DEATH(row.mistake(), std::string("^") + row.operation + ": [^\n]+\n$");
    }
  }
};

TEST_F(TrapDeathTest, NullWhereAValueIsRequired) {
  const auto dictionary = RegistryFixture::dictionary();
  expectDeath({
      {"CFRetain", [] { CFRetain(nullptr); }},
      {"CFRelease", [] { CFRelease(nullptr); }},
      {"CFGetTypeID", [] { CFGetTypeID(nullptr); }},
      {"CFStringGetLength", [] { CFStringGetLength(nullptr); }},
      {"CFStringCompare", [] { CFStringCompare(CFSTR("a"), nullptr, 0); }},
      {"CFStringHasPrefix", [] { CFStringHasPrefix(nullptr, CFSTR("a")); }},
      {"CFStringCreateWithCString",
       [] { CFStringCreateWithCString(kCFAllocatorDefault, nullptr, kCFStringEncodingUTF8); }},
      {"CFStringCreateArrayBySeparatingStrings",
       [] { CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, nullptr, CFSTR("/")); }},
      {"CFNumberCreate", [] { CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, nullptr); }},
      {"CFNumberGetValue", [] { CFNumberGetValue(nullptr, kCFNumberIntType, nullptr); }},
      {"CFNumberGetValue",
       [] { CFNumberGetValue(cfNumber32(1).get(), kCFNumberIntType, nullptr); }},
      {"CFArrayGetCount", [] { CFArrayGetCount(nullptr); }},
      {"CFArrayCreate",
       [] { CFArrayCreate(kCFAllocatorDefault, nullptr, 1, &kCFTypeArrayCallBacks); }},
      {"CFDictionarySetValue",
       [&] { CFDictionarySetValue(dictionary.get(), nullptr, CFSTR("v")); }},
      {"CFDictionarySetValue",
       [&] { CFDictionarySetValue(dictionary.get(), CFSTR("k"), nullptr); }},
      {"CFDictionaryGetValue", [&] { CFDictionaryGetValue(dictionary.get(), nullptr); }},
      {"IORegistryEntryFromPath", [] { IORegistryEntryFromPath(kIOMasterPortDefault, nullptr); }},
      {"IOObjectConformsTo", [] { IOObjectConformsTo(0, nullptr); }},
      {"IORegistryEntryCreateCFProperty",
       [] { IORegistryEntryCreateCFProperty(0, nullptr, kCFAllocatorDefault, 0); }},
      {"IORegistryEntryGetPath", [] { IORegistryEntryGetPath(0, "IOService", nullptr); }},
      {"IORegistryEntryGetLocationInPlane",
       [] { IORegistryEntryGetLocationInPlane(0, "IOService", nullptr); }},
      {"IORegistryEntryCreateIterator",
       [] { IORegistryEntryCreateIterator(0, "IOService", 0, nullptr); }},
      {"IORegistryCreateIterator", [] { IORegistryCreateIterator(0, "IOService", 0, nullptr); }},
      {"IORegistryEntryGetChildIterator",
       [] { IORegistryEntryGetChildIterator(0, "IOService", nullptr); }},
      {"IORegistryEntryGetChildEntry",
       [] { IORegistryEntryGetChildEntry(0, "IOService", nullptr); }},
      {"IORegistryEntryGetParentEntry",
       [] { IORegistryEntryGetParentEntry(0, "IOService", nullptr); }},
  });
}

TEST_F(TrapDeathTest, AValueOfAnotherTypeOrOutOfRange) {
  const auto number = cfNumber32(1);
  const auto array = RegistryFixture::array({CFSTR("x")});
  const CFTypeRef untyped = number.get();
  const auto* noString = static_cast<CFStringRef>(untyped);
  const auto* noArray = static_cast<CFArrayRef>(untyped);
  const auto* noDictionary = static_cast<CFDictionaryRef>(untyped);
  const CFTypeRef text = CFSTR("x");
  std::int64_t value = 0;
  expectDeath({
      {"CFStringGetLength", [&] { CFStringGetLength(noString); }},
      {"CFStringCompare", [&] { CFStringCompare(noString, CFSTR("a"), 0); }},
      {"CFNumberGetValue",
       [&] { CFNumberGetValue(static_cast<CFNumberRef>(text), kCFNumberLongLongType, &value); }},
      {"CFNumberGetValue", [&] { CFNumberGetValue(number.get(), 77, &value); }},
      {"CFNumberCreate", [&] { CFNumberCreate(kCFAllocatorDefault, 77, &value); }},
      {"CFArrayGetCount", [&] { CFArrayGetCount(noArray); }},
      {"CFArrayGetValueAtIndex", [&] { CFArrayGetValueAtIndex(array.get(), 1); }},
      {"CFArrayGetValueAtIndex", [&] { CFArrayGetValueAtIndex(array.get(), -1); }},
      {"CFArrayCreate",
       [] { CFArrayCreate(kCFAllocatorDefault, nullptr, -1, &kCFTypeArrayCallBacks); }},
      {"CFDictionaryGetValue", [&] { CFDictionaryGetValue(noDictionary, CFSTR("k")); }},
      {"IOServiceGetMatchingService",
       [&] {
         CFRetain(noDictionary);
         IOServiceGetMatchingService(kIOMasterPortDefault, noDictionary);
       }},
      {"CFStringGetBytes",
       [] {
         CFStringGetBytes(CFSTR("abc"), CFRangeMake(0, 4), kCFStringEncodingUTF8, 0, 0, nullptr, 0,
                          nullptr);
       }},
      {"CFStringGetBytes",
       [] {
         CFStringGetBytes(CFSTR("abc"), CFRangeMake(-1, 1), kCFStringEncodingUTF8, 0, 0, nullptr, 0,
                          nullptr);
       }},
  });
}

}  // namespace
