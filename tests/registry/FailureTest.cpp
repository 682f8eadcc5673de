#include <array>
#include <functional>
#include <stdexcept>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::failCall;
using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::Repeat;

class FailureTest : public RegistryFixture {
 protected:
  FailureTest() { MemoryRegistry::setProperty(entry, "Key", "value"); }

  struct Row {
    Operation operation;
    std::function<bool()> fails;             // calls it, and says whether it failed as it should
    std::function<bool()> succeedsWithNone;  // empty where there is no such thing
  };

  using Receive = std::function<kern_return_t(io_object_t*)>;
  static std::function<bool()> returns(kern_return_t result, Receive call) {
    return [result, call] {
      io_object_t out = 1;
      return call(&out) == result && out == 0;
    };
  }
  static Row handleRow(Operation operation, const Receive& call) {
    return {operation, returns(kIOReturnError, call), returns(kIOReturnSuccess, call)};
  }

  std::vector<Row> everyOperation() {
    const io_object_t object = handle.get();
    const io_object_t iterator = walk.get();
    const CFStringRef text = CFSTR("a/b");
    return {
        {Operation::IOServiceGetMatchingService,
         [] {
           const auto matching = dictionary();
           CFRetain(matching.get());
           const bool none = IOServiceGetMatchingService(kIOMasterPortDefault, matching.get()) == 0;
           return none && MemoryRegistry::accounts().values == 1;
         },
         {}},
        handleRow(Operation::IOServiceGetMatchingServices,
                  [](io_object_t* out) {
                    const auto matching = dictionary();
                    CFRetain(matching.get());
                    const kern_return_t result =
                        IOServiceGetMatchingServices(kIOMasterPortDefault, matching.get(), out);
                    EXPECT_EQ(1U, MemoryRegistry::accounts().values) << "it takes its reference";
                    return result;
                  }),
        {Operation::IORegistryGetRootEntry,
         [] { return IORegistryGetRootEntry(kIOMasterPortDefault) == 0; },
         {}},
        {Operation::IORegistryEntryFromPath,
         [] { return IORegistryEntryFromPath(kIOMasterPortDefault, "IOService:/") == 0; },
         {}},
        handleRow(Operation::IORegistryEntryGetParentEntry,
                  [=](io_object_t* out) {
                    return IORegistryEntryGetParentEntry(object, "IOService", out);
                  }),
        handleRow(Operation::IORegistryEntryGetChildEntry,
                  [=](io_object_t* out) {
                    return IORegistryEntryGetChildEntry(object, "IOService", out);
                  }),
        handleRow(Operation::IORegistryEntryCreateIterator,
                  [=](io_object_t* out) {
                    return IORegistryEntryCreateIterator(object, "IOService", Down, out);
                  }),
        handleRow(Operation::IORegistryCreateIterator,
                  [](io_object_t* out) {
                    return IORegistryCreateIterator(kIOMasterPortDefault, "IOService", Down, out);
                  }),
        handleRow(Operation::IORegistryEntryGetChildIterator,
                  [=](io_object_t* out) {
                    return IORegistryEntryGetChildIterator(object, "IOService", out);
                  }),
        handleRow(Operation::IORegistryEntryGetParentIterator,
                  [=](io_object_t* out) {
                    return IORegistryEntryGetParentIterator(object, "IOService", out);
                  }),
        {Operation::IOIteratorNext, [=] { return IOIteratorNext(iterator) == 0; }, {}},
        {Operation::IOIteratorIsValid, [=] { return IOIteratorIsValid(iterator) == 0; }, {}},
        {Operation::IOObjectConformsTo,
         [=] { return IOObjectConformsTo(object, "IOService") == 0; },
         {}},
        {Operation::IOObjectGetClass,
         [=] {
           std::array<char, sizeof(io_name_t)> name{'#'};
           return IOObjectGetClass(object, name.data()) == kIOReturnError && name[0] == '#';
         },
         {}},
        {Operation::IOObjectCopySuperclassForClass,
         [] { return IOObjectCopySuperclassForClass(CFSTR("IOService")) == nullptr; },
         {}},
        {Operation::IORegistryEntryGetRegistryEntryID,
         [=] {
           std::uint64_t id = 99;
           return IORegistryEntryGetRegistryEntryID(object, &id) == kIOReturnError && id == 99;
         },
         {}},
        {Operation::IORegistryEntryGetNameInPlane,
         [=] {
           std::array<char, sizeof(io_name_t)> name{'#'};
           return IORegistryEntryGetNameInPlane(object, "IOService", name.data()) ==
                      kIOReturnError &&
                  name[0] == '#';
         },
         {}},
        {Operation::IORegistryEntryGetPath,
         [=] {
           std::array<char, sizeof(io_string_t)> path{'#'};
           return IORegistryEntryGetPath(object, "IOService", path.data()) == kIOReturnError &&
                  path[0] == '#';
         },
         {}},
        {Operation::IORegistryEntryGetLocationInPlane,
         [=] {
           std::array<char, sizeof(io_name_t)> location{'#'};
           return IORegistryEntryGetLocationInPlane(object, "IOService", location.data()) ==
                      kIOReturnError &&
                  location[0] == '#';
         },
         {}},
        {Operation::IORegistryEntryCreateCFProperty,
         [=] {
           return IORegistryEntryCreateCFProperty(object, CFSTR("Key"), kCFAllocatorDefault, 0) ==
                  nullptr;
         },
         {}},
        {Operation::IORegistryEntryCreateCFProperties,
         [=] {
           CFMutableDictionaryRef properties = nullptr;
           return IORegistryEntryCreateCFProperties(object, &properties, kCFAllocatorDefault, 0) ==
                      kIOReturnError &&
                  properties == nullptr;
         },
         {}},
        {Operation::CFStringCreateWithCString,
         [] {
           return CFStringCreateWithCString(kCFAllocatorDefault, "x", kCFStringEncodingUTF8) ==
                  nullptr;
         },
         {}},
        {Operation::CFStringCreateArrayBySeparatingStrings,
         [=] {
           return CFStringCreateArrayBySeparatingStrings(kCFAllocatorDefault, text, CFSTR("/")) ==
                  nullptr;
         },
         {}},
        {Operation::CFNumberCreate,
         [] {
           const int one = 1;
           return CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &one) == nullptr;
         },
         {}},
        {Operation::CFNumberGetValue,
         [] {
           int target = 99;
           return !CFNumberGetValue(cfNumber32(1).get(), kCFNumberIntType, &target) && target == 99;
         },
         {}},
        {Operation::CFArrayCreate,
         [] {
           return CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks) == nullptr;
         },
         {}},
        {Operation::CFDictionaryCreateMutable,
         [] {
           return CFDictionaryCreateMutable(kCFAllocatorDefault, 0, nullptr, nullptr) == nullptr;
         },
         {}},
        {Operation::CFDictionaryGetValue,
         [] {
           return CFDictionaryGetValue(dictionary({{CFSTR("k"), CFSTR("v")}}).get(), CFSTR("k")) ==
                  nullptr;
         },
         {}},
        {Operation::CFStringGetBytes,
         [=] {
           CFIndex used = 99;
           UInt8 byte = '#';
           return CFStringGetBytes(text, CFRangeMake(0, 1), kCFStringEncodingUTF8, 0, 0, &byte, 1,
                                   &used) == 0 &&
                  used == 0 && byte == '#';
         },
         {}},
    };
  }

  const EntryID entry = addAt(root, "Entry", "1");
  const EntryID child = add(entry, "Child");
  const Handle handle = handleOf(entry);
  const Handle walk = walkFrom(root, Down);
};

TEST_F(FailureTest, EveryOperationThatCanFailDoesSoOnceOnDemand) {
  const auto rows = everyOperation();
  for (const auto& row : rows) {
    SCOPED_TRACE(static_cast<unsigned>(row.operation));
    IOIteratorReset(walk.get());
    failCall(row.operation, 1, Repeat::Once);
    EXPECT_TRUE(row.fails());
  }
  EXPECT_EQ(static_cast<std::size_t>(Operation::CFRetain), rows.size());
}

TEST_F(FailureTest, OperationsThatReturnBothCanSucceedWithNone) {
  for (const auto& row : everyOperation()) {
    SCOPED_TRACE(static_cast<unsigned>(row.operation));
    failCall(row.operation, 1, Repeat::Once, Failure::NullSuccess);
    EXPECT_TRUE(row.succeedsWithNone ? row.succeedsWithNone() : row.fails());
  }
}

TEST_F(FailureTest, TheNthCallFailsAndThoseBeforeAndAfterItDoNot) {
  failCall(Operation::IOObjectConformsTo, 3, Repeat::Once);
  std::vector<int> answers;
  for (int call = 0; call < 5; ++call) {
    answers.push_back(IOObjectConformsTo(handle.get(), "IOService"));
    IOIteratorIsValid(walk.get());  // counts for nothing
  }
  EXPECT_EQ((std::vector<int>{1, 1, 0, 1, 1}), answers);
}

TEST_F(FailureTest, FromThenOnEveryCallFailsUntilNothingIsToFail) {
  failCall(Operation::IOObjectConformsTo, 2, Repeat::FromThenOn);
  std::vector<int> answers;
  for (int call = 0; call < 4; ++call) {
    answers.push_back(IOObjectConformsTo(handle.get(), "IOService"));
  }
  EXPECT_EQ((std::vector<int>{1, 0, 0, 0}), answers);
  MemoryRegistry::failNothing();
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOService"));
}

TEST_F(FailureTest, AnyCallCountsEveryOperationThatCanFail) {
  MemoryRegistry::failAnyCall(3, Repeat::Once);
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOService"));
  IOObjectRetain(handle.get());  // can't fail, and is not counted
  IOObjectRelease(handle.get());
  EXPECT_TRUE(IOIteratorIsValid(walk.get()));
  EXPECT_FALSE(IOObjectConformsTo(handle.get(), "IOService"));
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOService"));
}

TEST_F(FailureTest, ANewOrderTakesThePlaceOfTheOld) {
  failCall(Operation::IOObjectConformsTo, 1, Repeat::FromThenOn);
  failCall(Operation::IOIteratorIsValid, 1, Repeat::Once);
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IOService"));
  EXPECT_FALSE(IOIteratorIsValid(walk.get()));
}

TEST_F(FailureTest, FailedCallsAreCounted) {
  failCall(Operation::IOObjectConformsTo, 1, Repeat::Once);
  const auto before = MemoryRegistry::calls(Operation::IOObjectConformsTo);
  IOObjectConformsTo(handle.get(), "IOService");
  EXPECT_EQ(before + 1, MemoryRegistry::calls(Operation::IOObjectConformsTo));
}

TEST_F(FailureTest, AFailedStepOfAWalkLosesNothing) {
  failCall(Operation::IOIteratorNext, 1, Repeat::Once);
  EXPECT_EQ(0U, next(walk));
  EXPECT_EQ((EntryIDs{entry, child}), rest(walk));
}

TEST_F(FailureTest, ResetForgetsTheOrder) {
  failCall(Operation::IORegistryEntryFromPath, 1, Repeat::FromThenOn);
  MemoryRegistry::reset();
  const EntryID top = add(MemoryRegistry::root(), "Top");
  const auto found = Handle::adopt(IORegistryEntryFromPath(kIOMasterPortDefault, "IOService:/"));
  EXPECT_EQ(top, MemoryRegistry::entryOf(found.get()));
}

TEST_F(FailureTest, WhatCannotFailCannotBeOrdered) {
  EXPECT_EQ("an operation that can't fail",
            refusal([] { failCall(Operation::CFRetain, 1, Repeat::Once); }));
  EXPECT_EQ("an operation that can't fail",
            refusal([] { failCall(Operation::IOObjectRelease, 1, Repeat::Once); }));
  EXPECT_EQ("calls are counted from 1",
            refusal([] { failCall(Operation::IOIteratorNext, 0, Repeat::Once); }));
  EXPECT_EQ("calls are counted from 1",
            refusal([] { MemoryRegistry::failAnyCall(0, Repeat::Once); }));
}

}  // namespace
