#include <functional>

#include "tests/registry/RegistryFixture.h"

namespace {

// What crashes on the operating system is a mistake of the program: it ends with one line that
// names the operation and the mistake.
class TrapDeathTest : public RegistryFixture {
 protected:
  struct Row {
    const char* operation;
    const char* mistake;
    std::function<void()> make;
  };
  static void expectDeath(const std::vector<Row>& rows) {
    GTEST_FLAG_SET(death_test_style, "fast");
    for (const Row& row : rows) {
      EXPECT_DEATH(row.make(), std::string("^") + row.operation + ": " + row.mistake + "\n$");
    }
  }
};

TEST_F(TrapDeathTest, NullWhereAValueIsRequired) {
  const auto dictionary = RegistryFixture::dictionary();
  expectDeath({
      {"CFRetain", "null where a value is required", [] { CFRetain(nullptr); }},
      {"CFRelease", "null where a value is required", [] { CFRelease(nullptr); }},
      {"CFGetTypeID", "null where a value is required", [] { CFGetTypeID(nullptr); }},
      {"CFStringGetLength", "null where a value is required", [] { CFStringGetLength(nullptr); }},
      {"CFStringCompare", "null where a value is required",
       [] { CFStringCompare(CFSTR("a"), nullptr, 0); }},
      {"CFStringHasPrefix", "null where a value is required",
       [] { CFStringHasPrefix(nullptr, CFSTR("a")); }},
      {"CFStringHasPrefix", "null where a value is required",
       [] { CFStringHasPrefix(CFSTR("a"), nullptr); }},
      {"CFStringCompare", "null where a value is required",
       [] { CFStringCompare(nullptr, CFSTR("a"), 0); }},
      {"CFStringCreateWithCString", "null where a text is required",
       [] { CFStringCreateWithCString(kCFAllocatorDefault, nullptr, kCFStringEncodingUTF8); }},
      {"CFStringCreateArrayBySeparatingStrings", "null where a value is required",
       [] { CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, nullptr, CFSTR("/")); }},
      {"CFStringCreateArrayBySeparatingStrings", "null where a value is required",
       [] { CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, CFSTR("/"), nullptr); }},
      {"CFNumberCreate", "null where a value is required",
       [] { CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, nullptr); }},
      {"CFNumberGetValue", "null where a value is required",
       [] { CFNumberGetValue(nullptr, kCFNumberIntType, nullptr); }},
      {"CFNumberGetValue", "null where a value is required",
       [] { CFNumberGetValue(cfNumber32(1).get(), kCFNumberIntType, nullptr); }},
      {"CFNumberIsFloatType", "null where a value is required",
       [] { CFNumberIsFloatType(nullptr); }},
      {"CFBooleanGetValue", "null where a value is required", [] { CFBooleanGetValue(nullptr); }},
      {"CFDataGetLength", "null where a value is required", [] { CFDataGetLength(nullptr); }},
      {"CFDataGetBytePtr", "null where a value is required", [] { CFDataGetBytePtr(nullptr); }},
      {"CFDictionaryGetCount", "null where a value is required",
       [] { CFDictionaryGetCount(nullptr); }},
      {"CFDictionaryGetKeysAndValues", "null where a value is required",
       [] { CFDictionaryGetKeysAndValues(nullptr, nullptr, nullptr); }},
      {"CFArrayGetCount", "null where a value is required", [] { CFArrayGetCount(nullptr); }},
      {"CFArrayGetValueAtIndex", "null where a value is required",
       [] { CFArrayGetValueAtIndex(nullptr, 0); }},
      {"CFStringGetBytes", "null where a value is required",
       [] {
         CFStringGetBytes(nullptr, CFRangeMake(0, 0), kCFStringEncodingUTF8, 0, 0, nullptr, 0,
                          nullptr);
       }},
      {"CFDictionarySetValue", "null where a value is required",
       [] { CFDictionarySetValue(nullptr, CFSTR("k"), CFSTR("v")); }},
      {"CFDictionaryGetValue", "null where a value is required",
       [] { CFDictionaryGetValue(nullptr, CFSTR("k")); }},
      {"CFArrayCreate", "no values",
       [] { CFArrayCreate(kCFAllocatorDefault, nullptr, 1, &kCFTypeArrayCallBacks); }},
      {"CFDictionarySetValue", "null where a value is required",
       [&] { CFDictionarySetValue(dictionary.get(), nullptr, CFSTR("v")); }},
      {"CFDictionarySetValue", "null where a value is required",
       [&] { CFDictionarySetValue(dictionary.get(), CFSTR("k"), nullptr); }},
      {"CFDictionaryGetValue", "null where a value is required",
       [&] { CFDictionaryGetValue(dictionary.get(), nullptr); }},
      {"IORegistryEntryFromPath", "null where a path is required",
       [] { IORegistryEntryFromPath(kIOMasterPortDefault, nullptr); }},
      {"IOObjectConformsTo", "null where a class is required",
       [] { IOObjectConformsTo(0, nullptr); }},
      {"IORegistryEntryCreateCFProperty", "null where a value is required",
       [] { IORegistryEntryCreateCFProperty(0, nullptr, kCFAllocatorDefault, 0); }},
      {"IORegistryEntryGetPath", "null for the result",
       [] { IORegistryEntryGetPath(0, "IOService", nullptr); }},
      {"IORegistryEntryGetLocationInPlane", "null for the result",
       [] { IORegistryEntryGetLocationInPlane(0, "IOService", nullptr); }},
      {"IORegistryEntryCreateIterator", "null for the result",
       [] { IORegistryEntryCreateIterator(0, "IOService", 0, nullptr); }},
      {"IORegistryCreateIterator", "null for the result",
       [] { IORegistryCreateIterator(0, "IOService", 0, nullptr); }},
      {"IORegistryEntryGetChildIterator", "null for the result",
       [] { IORegistryEntryGetChildIterator(0, "IOService", nullptr); }},
      {"IORegistryEntryGetChildEntry", "null for the result",
       [] { IORegistryEntryGetChildEntry(0, "IOService", nullptr); }},
      {"IORegistryEntryGetParentIterator", "null for the result",
       [] { IORegistryEntryGetParentIterator(0, "IOService", nullptr); }},
      {"IOServiceGetMatchingServices", "null for the result",
       [] { IOServiceGetMatchingServices(kIOMasterPortDefault, nullptr, nullptr); }},
      {"IOObjectGetClass", "null for the result", [] { IOObjectGetClass(0, nullptr); }},
      {"IORegistryEntryGetRegistryEntryID", "null for the result",
       [] { IORegistryEntryGetRegistryEntryID(0, nullptr); }},
      {"IORegistryEntryGetNameInPlane", "null for the result",
       [] { IORegistryEntryGetNameInPlane(0, "IOService", nullptr); }},
      {"IORegistryEntryCreateCFProperties", "null for the result",
       [] { IORegistryEntryCreateCFProperties(0, nullptr, kCFAllocatorDefault, 0); }},
      {"IORegistryEntryGetParentEntry", "null for the result",
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
      {"CFStringGetLength", "a value of another type than required",
       [&] { CFStringGetLength(noString); }},
      {"CFStringCompare", "a value of another type than required",
       [&] { CFStringCompare(noString, CFSTR("a"), 0); }},
      {"CFNumberGetValue", "a value of another type than required",
       [&] { CFNumberGetValue(static_cast<CFNumberRef>(text), kCFNumberLongLongType, &value); }},
      {"CFNumberGetValue", "a type of number that is not known",
       [&] { CFNumberGetValue(number.get(), 77, &value); }},
      {"CFNumberCreate", "a type of number that is not known",
       [&] { CFNumberCreate(kCFAllocatorDefault, 77, &value); }},
      {"CFArrayGetCount", "a value of another type than required",
       [&] { CFArrayGetCount(noArray); }},
      {"CFArrayGetValueAtIndex", "an index outside the array",
       [&] { CFArrayGetValueAtIndex(array.get(), 1); }},
      {"CFArrayGetValueAtIndex", "an index outside the array",
       [&] { CFArrayGetValueAtIndex(array.get(), -1); }},
      {"CFArrayCreate", "a negative count",
       [] { CFArrayCreate(kCFAllocatorDefault, nullptr, -1, &kCFTypeArrayCallBacks); }},
      {"CFDictionaryGetValue", "a value of another type than required",
       [&] { CFDictionaryGetValue(noDictionary, CFSTR("k")); }},
      {"IOServiceGetMatchingService", "a value of another type than required",
       [&] {
         CFRetain(noDictionary);
         IOServiceGetMatchingService(kIOMasterPortDefault, noDictionary);
       }},
      {"IOServiceGetMatchingServices", "a value of another type than required",
       [&] {
         io_iterator_t found = 0;
         CFRetain(noDictionary);
         IOServiceGetMatchingServices(kIOMasterPortDefault, noDictionary, &found);
       }},
      {"CFDataGetBytePtr", "a value of another type than required",
       [&] { CFDataGetBytePtr(static_cast<CFDataRef>(untyped)); }},
      {"CFBooleanGetValue", "a value of another type than required",
       [&] { CFBooleanGetValue(static_cast<CFBooleanRef>(untyped)); }},
      {"CFDataGetLength", "a value of another type than required",
       [&] { CFDataGetLength(static_cast<CFDataRef>(untyped)); }},
      {"CFNumberIsFloatType", "a value of another type than required",
       [&] { CFNumberIsFloatType(static_cast<CFNumberRef>(text)); }},
      {"CFStringGetBytes", "a range outside the string",
       [] {
         CFStringGetBytes(CFSTR("abc"), CFRangeMake(0, 4), kCFStringEncodingUTF8, 0, 0, nullptr, 0,
                          nullptr);
       }},
      {"CFStringGetBytes", "a range outside the string",
       [] {
         CFStringGetBytes(CFSTR("abc"), CFRangeMake(-1, 1), kCFStringEncodingUTF8, 0, 0, nullptr, 0,
                          nullptr);
       }},
  });
}

}  // namespace
