#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry/Registry.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/memory/MemoryRegistry.h"

// A registry of its own for each test, whose accounts are settled at the end: whoever keeps a
// reference has to say so.
class RegistryFixture : public testing::Test {
 protected:
  using EntryID = MemoryRegistry::EntryID;
  using Handle = RAIDMonitoring::RegistryHandle;
  template <class Ref>
  using Value = RAIDMonitoring::CFReference<Ref>;

  RegistryFixture() { MemoryRegistry::reset(); }

  // Here and not in TearDown, so that the handles that a test has as fields are back.
  ~RegistryFixture() override {
    MemoryRegistry::failNothing();
    const auto accounts = MemoryRegistry::accounts();
    EXPECT_EQ(std::vector<MemoryRegistry::KeptEntry>(), accounts.entries);
    EXPECT_EQ(0U, accounts.iterators);
    EXPECT_EQ(0U, accounts.values);
    MemoryRegistry::reset();
  }

  EntryID add(EntryID parent, const std::string& name, const std::string& className = "IOService") {
    MemoryRegistry::EntryDescription description;
    description.className = className;
    if (!name.empty()) description.name = name;
    return MemoryRegistry::add(parent, std::move(description));
  }
  EntryID addAt(EntryID parent, const std::string& name, const std::string& location) {
    const EntryID entry = add(parent, name);
    MemoryRegistry::setLocation(entry, location);
    return entry;
  }

  // What a change that is not allowed throws says; empty when it is allowed.
  static std::string refusal(const std::function<void()>& change) {
    try {
      change();
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return {};
  }

  static Handle handleOf(EntryID entry) { return Handle::adopt(MemoryRegistry::handle(entry)); }

  static Handle walkFrom(EntryID entry, IOOptionBits options) {
    Handle iterator;
    EXPECT_EQ(kIOReturnSuccess, IORegistryEntryCreateIterator(handleOf(entry).get(), "IOService",
                                                              options, iterator.receive()));
    return iterator;
  }
  static Handle childrenOf(EntryID entry) {
    Handle iterator;
    EXPECT_EQ(kIOReturnSuccess, IORegistryEntryGetChildIterator(handleOf(entry).get(), "IOService",
                                                                iterator.receive()));
    return iterator;
  }

  // 0 at the end.
  static EntryID next(const Handle& iterator) {
    const auto entry = Handle::adopt(IOIteratorNext(iterator.get()));
    return MemoryRegistry::entryOf(entry.get());
  }
  static std::vector<EntryID> rest(const Handle& iterator) {
    std::vector<EntryID> entries;
    while (const EntryID entry = next(iterator))
      entries.push_back(entry);
    return entries;
  }

  static Value<CFStringRef> string(const std::string& text) {
    return Value<CFStringRef>::adopt(
        CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
  }
  static Value<CFNumberRef> cfNumber64(std::int64_t value) {
    return Value<CFNumberRef>::adopt(
        CFNumberCreate(kCFAllocatorDefault, kCFNumberLongLongType, &value));
  }
  static Value<CFNumberRef> cfNumber32(std::int32_t value) {
    return Value<CFNumberRef>::adopt(CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &value));
  }
  static Value<CFNumberRef> real(double value) {
    return Value<CFNumberRef>::adopt(
        CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, &value));
  }
  static Value<CFMutableDictionaryRef> dictionary(
      std::initializer_list<std::pair<CFStringRef, CFTypeRef>> pairs = {}) {
    auto made = Value<CFMutableDictionaryRef>::adopt(CFDictionaryCreateMutable(
        kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    for (const auto& [key, value] : pairs)
      CFDictionarySetValue(made.get(), key, value);
    return made;
  }
  static Value<CFArrayRef> array(std::vector<CFTypeRef> values) {
    return Value<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, values.data(),
                                                  static_cast<CFIndex>(values.size()),
                                                  &kCFTypeArrayCallBacks));
  }
  static Value<CFTypeRef> propertyOf(EntryID entry, const std::string& key) {
    return Value<CFTypeRef>::adopt(IORegistryEntryCreateCFProperty(
        handleOf(entry).get(), string(key).get(), kCFAllocatorDefault, 0));
  }

  const EntryID root = MemoryRegistry::root();
};

using EntryIDs = std::vector<MemoryRegistry::EntryID>;
inline constexpr IOOptionBits Down = kIORegistryIterateRecursively;
inline constexpr IOOptionBits Up = kIORegistryIterateRecursively | kIORegistryIterateParents;
