#include <functional>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::Operation;

class OperationCountTest : public RegistryFixture {
 protected:
  OperationCountTest() : top(add(root, "Top")), below(add(top, "Below")) {
    MemoryRegistry::setProperty(top, "key", "value");
    MemoryRegistry::setLocation(top, "1");
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
  const struct {
    Operation operation;
    std::function<void()> call;
  } rows[] = {
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
  std::size_t place = 0;
  for (const auto& row : rows) {
    const auto before = MemoryRegistry::calls(row.operation);
    const auto allBefore = MemoryRegistry::calls();
    row.call();
    EXPECT_EQ(before + 1, MemoryRegistry::calls(row.operation)) << place;
    EXPECT_EQ(allBefore + 1, MemoryRegistry::calls()) << place;
    ++place;
  }
}

}  // namespace
