#include <functional>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::Operation;

class OperationCountTest : public RegistryFixture {
 protected:
  struct Row {
    Operation operation;
    std::function<void()> call;
  };

  OperationCountTest() : top(add(root, "Top")), below(add(top, "Below")) {
    MemoryRegistry::setProperty(top, "key", "value");
    MemoryRegistry::setLocation(top, "1");
  }

  template <std::size_t Count>
  static void expectEachCounts(const Row (&rows)[Count]) {
    for (std::size_t place = 0; place < Count; ++place) {
      const auto before = MemoryRegistry::calls(rows[place].operation);
      const auto allBefore = MemoryRegistry::calls();
      rows[place].call();
      EXPECT_EQ(before + 1, MemoryRegistry::calls(rows[place].operation)) << place;
      EXPECT_EQ(allBefore + 1, MemoryRegistry::calls()) << place;
    }
  }

  const EntryID top;
  const EntryID below;
  const Handle entry = handleOf(top);
  const Handle child = handleOf(below);
  const Handle walk = walkFrom(top, Down);
  const Value<CFStringRef> text = string("a/b");
  const Value<CFStringRef> separator = string("/");
  const Value<CFNumberRef> number = cfNumber32(1);
  const Value<CFArrayRef> values = array({CFSTR("x")});
  const Value<CFMutableDictionaryRef> pairs = dictionary();
};

TEST_F(OperationCountTest, EachOperationCountsItselfAndNothingElse) {
  Handle made;
  Handle walkMade;
  Value<CFTypeRef> value;
  io_string_t path;
  io_name_t location;
  std::int32_t whole = 1;
  UInt8 bytes[8];
  CFIndex used = 0;
  const auto take = [&value](CFTypeRef created) { value = Value<CFTypeRef>::adopt(created); };
  const auto matched = [this] {
    CFRetain(pairs.get());
    return pairs.get();
  };
  CFDictionarySetValue(pairs.get(), CFSTR("IOProviderClass"), CFSTR("None"));
  const CFMutableDictionaryRef consumed = matched();
  const Row rows[] = {
      {Operation::IOServiceGetMatchingService,
       [&] { IOServiceGetMatchingService(kIOMasterPortDefault, consumed); }},
      {Operation::IORegistryEntryFromPath,
       [&] { IORegistryEntryFromPath(kIOMasterPortDefault, "IOService:/none"); }},
      {Operation::IORegistryEntryGetParentEntry,
       [&] { IORegistryEntryGetParentEntry(child.get(), "IOService", made.receive()); }},
      {Operation::IOObjectRelease, [&] { made.reset(); }},
      {Operation::IORegistryEntryGetChildEntry,
       [&] { IORegistryEntryGetChildEntry(entry.get(), "IOService", made.receive()); }},
      {Operation::IOObjectRetain, [&] { IOObjectRetain(made.get()); }},
      {Operation::IOObjectRelease, [&] { IOObjectRelease(made.get()); }},
      {Operation::IOObjectRelease, [&] { made.reset(); }},
      {Operation::IORegistryEntryCreateIterator,
       [&] { IORegistryEntryCreateIterator(entry.get(), "IOService", 0, walkMade.receive()); }},
      {Operation::IOObjectRelease, [&] { walkMade.reset(); }},
      {Operation::IORegistryCreateIterator,
       [&] { IORegistryCreateIterator(kIOMasterPortDefault, "IOService", 0, walkMade.receive()); }},
      {Operation::IOObjectRelease, [&] { walkMade.reset(); }},
      {Operation::IORegistryEntryGetChildIterator,
       [&] { IORegistryEntryGetChildIterator(entry.get(), "IOService", walkMade.receive()); }},
      {Operation::IOIteratorNext, [&] { made = Handle::adopt(IOIteratorNext(walk.get())); }},
      {Operation::IOIteratorIsValid, [&] { IOIteratorIsValid(walk.get()); }},
      {Operation::IOIteratorReset, [&] { IOIteratorReset(walk.get()); }},
      {Operation::IOObjectConformsTo, [&] { IOObjectConformsTo(entry.get(), "IOService"); }},
      {Operation::IORegistryEntryGetPath,
       [&] { IORegistryEntryGetPath(entry.get(), "IOService", path); }},
      {Operation::IORegistryEntryGetLocationInPlane,
       [&] { IORegistryEntryGetLocationInPlane(entry.get(), "IOService", location); }},
      {Operation::IORegistryEntryCreateCFProperty,
       [&] {
         take(IORegistryEntryCreateCFProperty(entry.get(), CFSTR("key"), kCFAllocatorDefault, 0));
       }},
      {Operation::CFGetTypeID, [&] { CFGetTypeID(value.get()); }},
      {Operation::CFRetain, [&] { CFRetain(value.get()); }},
      {Operation::CFRelease, [&] { CFRelease(value.get()); }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::CFStringCreateWithCString,
       [&] { take(CFStringCreateWithCString(kCFAllocatorDefault, "t", kCFStringEncodingUTF8)); }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::CFStringCreateArrayBySeparatingStrings,
       [&] {
         take(CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, text.get(),
                                                     separator.get()));
       }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::CFStringGetLength, [&] { CFStringGetLength(text.get()); }},
      {Operation::CFStringCompare, [&] { CFStringCompare(text.get(), separator.get(), 0); }},
      {Operation::CFStringHasPrefix, [&] { CFStringHasPrefix(text.get(), separator.get()); }},
      {Operation::CFStringGetBytes,
       [&] {
         CFStringGetBytes(text.get(), CFRangeMake(0, 3), kCFStringEncodingUTF8, 0, 0, bytes,
                          sizeof bytes, &used);
       }},
      {Operation::CFNumberCreate,
       [&] { take(CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &whole)); }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::CFNumberGetValue,
       [&] { CFNumberGetValue(number.get(), kCFNumberIntType, &whole); }},
      {Operation::CFArrayCreate,
       [&] { take(CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks)); }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::CFArrayGetCount, [&] { CFArrayGetCount(values.get()); }},
      {Operation::CFArrayGetValueAtIndex, [&] { CFArrayGetValueAtIndex(values.get(), 0); }},
      {Operation::CFDictionaryCreateMutable,
       [&] {
         take(CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                        &kCFTypeDictionaryValueCallBacks));
       }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::CFDictionarySetValue,
       [&] { CFDictionarySetValue(pairs.get(), text.get(), separator.get()); }},
      {Operation::CFDictionaryGetValue, [&] { CFDictionaryGetValue(pairs.get(), text.get()); }},
  };
  expectEachCounts(rows);
}

TEST_F(OperationCountTest, SoDoesEachThatLooksAtEntriesAndValuesAsTheyAre) {
  MemoryRegistry::setProperty(top, "Yes", true);
  MemoryRegistry::setProperty(top, "Data", MemoryRegistry::Data{1});
  const auto yes = propertyOf(top, "Yes");
  const auto data = propertyOf(top, "Data");
  const auto* boolean = static_cast<CFBooleanRef>(yes.get());
  const auto* bytes = static_cast<CFDataRef>(data.get());
  const CFMutableDictionaryRef consumed = dictionary().release();
  Handle made;
  Value<CFTypeRef> value;
  Value<CFMutableDictionaryRef> properties;
  io_name_t name;
  std::uint64_t id = 0;
  const Row rows[] = {
      {Operation::IOServiceGetMatchingServices,
       [&] { IOServiceGetMatchingServices(kIOMasterPortDefault, consumed, made.receive()); }},
      {Operation::IOObjectRelease, [&] { made.reset(); }},
      {Operation::IORegistryGetRootEntry,
       [&] { made = Handle::adopt(IORegistryGetRootEntry(kIOMasterPortDefault)); }},
      {Operation::IOObjectRelease, [&] { made.reset(); }},
      {Operation::IORegistryEntryGetParentIterator,
       [&] { IORegistryEntryGetParentIterator(child.get(), "IOService", made.receive()); }},
      {Operation::IOObjectGetClass, [&] { IOObjectGetClass(entry.get(), name); }},
      {Operation::IOObjectCopySuperclassForClass,
       [&] {
         value = Value<CFTypeRef>::adopt(IOObjectCopySuperclassForClass(CFSTR("IOService")));
       }},
      {Operation::CFRelease, [&] { value.reset(); }},
      {Operation::IORegistryEntryGetRegistryEntryID,
       [&] { IORegistryEntryGetRegistryEntryID(entry.get(), &id); }},
      {Operation::IORegistryEntryGetNameInPlane,
       [&] { IORegistryEntryGetNameInPlane(entry.get(), "IOService", name); }},
      {Operation::IORegistryEntryCreateCFProperties,
       [&] {
         CFMutableDictionaryRef all = nullptr;
         IORegistryEntryCreateCFProperties(entry.get(), &all, kCFAllocatorDefault, 0);
         properties = Value<CFMutableDictionaryRef>::adopt(all);
       }},
      {Operation::CFDictionaryGetCount, [&] { CFDictionaryGetCount(properties.get()); }},
      {Operation::CFDictionaryGetKeysAndValues,
       [&] { CFDictionaryGetKeysAndValues(properties.get(), nullptr, nullptr); }},
      {Operation::CFNumberIsFloatType, [&] { CFNumberIsFloatType(number.get()); }},
      {Operation::CFBooleanGetValue, [&] { CFBooleanGetValue(boolean); }},
      {Operation::CFDataGetLength, [&] { CFDataGetLength(bytes); }},
      {Operation::CFDataGetBytePtr, [&] { CFDataGetBytePtr(bytes); }},
  };
  expectEachCounts(rows);
}

}  // namespace
