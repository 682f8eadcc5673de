#include <algorithm>
#include <array>

#include "tests/registry/RegistryFixture.h"

// What has to be asked to write a registry down.

namespace {

using MemoryRegistry::Dictionary;

class FactsTest : public RegistryFixture {
 protected:
  EntryID addOf(const std::vector<std::string>& chain, std::uint32_t state = 30) {
    MemoryRegistry::EntryDescription description;
    description.className = chain.back();
    description.inheritance = chain;
    description.state = state;
    return MemoryRegistry::add(root, std::move(description));
  }

  static std::string nameOf(EntryID entry, const char* plane = "IOService") {
    std::array<char, sizeof(io_name_t)> name{};
    EXPECT_EQ(kIOReturnSuccess,
              IORegistryEntryGetNameInPlane(handleOf(entry).get(), plane, name.data()));
    return name.data();
  }
  static std::string classOf(EntryID entry) {
    std::array<char, sizeof(io_name_t)> name{};
    EXPECT_EQ(kIOReturnSuccess, IOObjectGetClass(handleOf(entry).get(), name.data()));
    return name.data();
  }
  static std::string textOf(CFTypeRef value) {
    std::array<UInt8, 256> buffer{};
    CFIndex used = 0;
    const auto* text = static_cast<CFStringRef>(value);
    CFStringGetBytes(text, CFRangeMake(0, CFStringGetLength(text)), kCFStringEncodingUTF8, '?', 0,
                     buffer.data(), static_cast<CFIndex>(buffer.size()), &used);
    return {buffer.begin(), buffer.begin() + used};
  }
  // Empty when there is none.
  static std::string superclassOf(const std::string& className) {
    const auto found =
        Value<CFStringRef>::adopt(IOObjectCopySuperclassForClass(string(className).get()));
    return found ? textOf(found.get()) : "";
  }
  static EntryIDs matching(Value<CFMutableDictionaryRef> dictionary) {
    Handle iterator;
    EXPECT_EQ(kIOReturnSuccess,
              IOServiceGetMatchingServices(kIOMasterPortDefault, dictionary.release(),
                                           iterator.receive()));
    return iterator ? rest(iterator) : EntryIDs();
  }
  static Value<CFMutableDictionaryRef> propertiesOf(EntryID entry) {
    CFMutableDictionaryRef properties = nullptr;
    EXPECT_EQ(kIOReturnSuccess, IORegistryEntryCreateCFProperties(
                                    handleOf(entry).get(), &properties, kCFAllocatorDefault, 0));
    return Value<CFMutableDictionaryRef>::adopt(properties);
  }
};

TEST_F(FactsTest, TheRootComesWithOneReference) {
  const auto handle = Handle::adopt(IORegistryGetRootEntry(kIOMasterPortDefault));
  EXPECT_EQ(root, MemoryRegistry::entryOf(handle.get()));
  EXPECT_EQ(1U, MemoryRegistry::references(root));
}

TEST_F(FactsTest, AnEntryTellsItsID) {
  const EntryID entry = add(root, "Entry");
  std::uint64_t id = 0;
  EXPECT_EQ(kIOReturnSuccess, IORegistryEntryGetRegistryEntryID(handleOf(entry).get(), &id));
  EXPECT_EQ(entry, id);
}

TEST_F(FactsTest, TheNameIsTheSameInEveryPlaneAndCutWhereItIsTooLong) {
  const EntryID entry = add(root, "Entry");
  EXPECT_EQ("Entry", nameOf(entry));
  EXPECT_EQ("Entry", nameOf(entry, "IODeviceTree"));
  MemoryRegistry::setName(entry, "");
  EXPECT_EQ("", nameOf(entry));
  MemoryRegistry::setName(entry, std::string(300, 'n'));
  EXPECT_EQ(std::string(127, 'n'), nameOf(entry));
}

TEST_F(FactsTest, TheClassIsTheEntrysOrWhatItIsToBeTakenFor) {
  const EntryID entry = addOf({"IORegistryEntry", "IOService", "Driver"});
  EXPECT_EQ("Driver", classOf(entry));
  MemoryRegistry::setProperty(entry, "IOClassNameOverride", "Other");
  EXPECT_EQ("Other", classOf(entry));
  MemoryRegistry::setProperty(entry, "IOClassNameOverride", true);
  EXPECT_EQ("Driver", classOf(entry));
}

TEST_F(FactsTest, ASuperclassIsWhatTheEntriesSayItIs) {
  EXPECT_EQ("", superclassOf("Driver"));
  const EntryID entry = addOf({"IORegistryEntry", "IOService", "Driver"});
  EXPECT_EQ("IOService", superclassOf("Driver"));
  EXPECT_EQ("IORegistryEntry", superclassOf("IOService"));
  EXPECT_EQ("", superclassOf("IORegistryEntry"));
  MemoryRegistry::terminate(entry);
  EXPECT_EQ("", superclassOf("Driver"));
}

TEST_F(FactsTest, OfSeveralChainsOfAClassTheLongestTellsItsSuperclass) {
  addOf({"IORegistryEntry", "Driver"});
  addOf({"IORegistryEntry", "IOService", "Middle", "Driver"});
  addOf({"IORegistryEntry", "IOService", "Other", "Driver", "Sub", "SubSub"});
  EXPECT_EQ("Middle", superclassOf("Driver"));
}

TEST_F(FactsTest, AllMatchingServicesComeInTheOrderOfTheirIDs) {
  const EntryID second = addOf({"IORegistryEntry", "IOService", "Driver"});
  const EntryID third = addOf({"IORegistryEntry", "IOService", "Other"});
  addOf({"IORegistryEntry", "IOService", "Driver"}, 0);  // never registered
  addOf({"IORegistryEntry", "Driver"}, 31);              // inactive
  const EntryID last = addOf({"IORegistryEntry", "IOService", "Driver", "Sub"});
  EXPECT_EQ((EntryIDs{second, third, last}), matching(dictionary()));
  EXPECT_EQ((EntryIDs{second, last}),
            matching(dictionary({{CFSTR("IOProviderClass"), CFSTR("Driver")}})));
}

TEST_F(FactsTest, NoMatchingServiceIsASuccessWithoutAnIterator) {
  io_iterator_t found = 1;
  EXPECT_EQ(kIOReturnSuccess,
            IOServiceGetMatchingServices(kIOMasterPortDefault, dictionary().release(), &found));
  EXPECT_EQ(0U, found);
}

TEST_F(FactsTest, WithNothingToMatchNothingIsFound) {
  io_iterator_t found = 1;
  EXPECT_EQ(kIOReturnBadArgument,
            IOServiceGetMatchingServices(kIOMasterPortDefault, nullptr, &found));
  EXPECT_EQ(0U, found);
}

TEST_F(FactsTest, TheParentsComeInTheOrderOfAttachment) {
  const EntryID a = add(root, "A");
  const EntryID b = add(root, "B");
  const EntryID child = add(b, "Child");
  MemoryRegistry::attach(child, a);
  Handle iterator;
  EXPECT_EQ(kIOReturnSuccess, IORegistryEntryGetParentIterator(handleOf(child).get(), "IOService",
                                                               iterator.receive()));
  EXPECT_EQ((EntryIDs{b, a}), rest(iterator));
  EXPECT_EQ(kIOReturnSuccess, IORegistryEntryGetParentIterator(handleOf(child).get(),
                                                               "IODeviceTree", iterator.receive()));
  EXPECT_FALSE(iterator);
}

TEST_F(FactsTest, AllPropertiesComeAsFreshCopies) {
  const EntryID entry = add(root, "Entry");
  EXPECT_EQ(0, CFDictionaryGetCount(propertiesOf(entry).get()));
  MemoryRegistry::setProperty(entry, "Number", 7);
  MemoryRegistry::setProperty(entry, "List", MemoryRegistry::Array{"a", Dictionary{{"k", true}}});
  const auto properties = propertiesOf(entry);
  ASSERT_EQ(2, CFDictionaryGetCount(properties.get()));
  std::array<const void*, 2> keys{};
  std::array<const void*, 2> values{};
  CFDictionaryGetKeysAndValues(properties.get(), keys.data(), values.data());
  for (std::size_t at = 0; at < keys.size(); ++at)
    EXPECT_EQ(values[at], CFDictionaryGetValue(properties.get(), keys[at])) << textOf(keys[at]);
  EXPECT_NE(textOf(keys[0]), textOf(keys[1]));
  CFDictionarySetValue(properties.get(), CFSTR("Number"), CFSTR("changed"));
  EXPECT_EQ(CFNumberGetTypeID(), CFGetTypeID(propertyOf(entry, "Number").get()));
}

TEST_F(FactsTest, ValuesTellWhatTheyAre) {
  const EntryID entry = add(root, "Entry");
  MemoryRegistry::setProperty(entry, "Yes", true);
  MemoryRegistry::setProperty(entry, "No", false);
  MemoryRegistry::setProperty(entry, "Data", MemoryRegistry::Data{1, 2, 3});
  MemoryRegistry::setProperty(entry, "Real", 0.5);
  const auto yes = propertyOf(entry, "Yes");
  ASSERT_EQ(CFBooleanGetTypeID(), CFGetTypeID(yes.get()));
  EXPECT_EQ(1, CFBooleanGetValue(static_cast<CFBooleanRef>(yes.get())));
  EXPECT_EQ(0, CFBooleanGetValue(static_cast<CFBooleanRef>(propertyOf(entry, "No").get())));
  const auto data = propertyOf(entry, "Data");
  ASSERT_EQ(CFDataGetTypeID(), CFGetTypeID(data.get()));
  const auto* bytes = static_cast<CFDataRef>(data.get());
  EXPECT_EQ((std::vector<UInt8>{1, 2, 3}),
            std::vector<UInt8>(CFDataGetBytePtr(bytes),
                               CFDataGetBytePtr(bytes) + CFDataGetLength(bytes)));
  EXPECT_TRUE(CFNumberIsFloatType(static_cast<CFNumberRef>(propertyOf(entry, "Real").get())));
  EXPECT_FALSE(CFNumberIsFloatType(cfNumber32(1).get()));
}

TEST_F(FactsTest, ADeadHandleIsAnsweredWithAnError) {
  const EntryID entry = add(root, "Entry");
  const Handle handle = handleOf(entry);
  MemoryRegistry::terminate(entry);
  std::array<char, sizeof(io_name_t)> name{};
  std::uint64_t id = 0;
  io_iterator_t iterator = 1;
  CFMutableDictionaryRef properties = nullptr;
  EXPECT_EQ(MACH_SEND_INVALID_DEST, IOObjectGetClass(handle.get(), name.data()));
  EXPECT_EQ(MACH_SEND_INVALID_DEST, IORegistryEntryGetNameInPlane(handle.get(), "", name.data()));
  EXPECT_EQ(MACH_SEND_INVALID_DEST, IORegistryEntryGetRegistryEntryID(handle.get(), &id));
  EXPECT_EQ(MACH_SEND_INVALID_DEST,
            IORegistryEntryGetParentIterator(handle.get(), "IOService", &iterator));
  EXPECT_EQ(0U, iterator);
  EXPECT_EQ(MACH_SEND_INVALID_DEST,
            IORegistryEntryCreateCFProperties(handle.get(), &properties, kCFAllocatorDefault, 0));
  EXPECT_EQ(nullptr, properties);
}

}  // namespace
