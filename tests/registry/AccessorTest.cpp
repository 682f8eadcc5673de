#include <array>

#include "tests/registry/RegistryFixture.h"

namespace {

class AccessorTest : public RegistryFixture {
 protected:
  const EntryID top = add(root, "Top");
  const EntryID first = addAt(top, "First", "1C,4");
  const EntryID second = add(top, "Second");

  struct Location {
    kern_return_t result;
    std::string text;
  };
  static Location locationOf(io_object_t entry, const char* plane = "IOService") {
    std::array<char, sizeof(io_name_t)> buffer;
    buffer.fill('#');
    const auto result = IORegistryEntryGetLocationInPlane(entry, plane, buffer.data());
    if (result != kIOReturnSuccess) {
      EXPECT_EQ('#', buffer.front()) << "the buffer was touched";
      return {result, ""};
    }
    return {result, buffer.data()};
  }
};

TEST_F(AccessorTest, TheLocationIsTheTextBehindTheAtSign) {
  EXPECT_EQ("1C,4", locationOf(handleOf(first).get()).text);
}

TEST_F(AccessorTest, AnEntryWithoutALocationLeavesTheBufferAlone) {
  EXPECT_EQ(kIOReturnNotFound, locationOf(handleOf(second).get()).result);
  MemoryRegistry::setLocation(first, "");
  EXPECT_EQ(kIOReturnNotFound, locationOf(handleOf(first).get()).result);
}

TEST_F(AccessorTest, TheLocationIsTheSameInEveryPlane) {
  for (const char* plane : {static_cast<const char*>(nullptr), "", "IODeviceTree"}) {
    EXPECT_EQ("1C,4", locationOf(handleOf(first).get(), plane).text);
  }
}

TEST_F(AccessorTest, ALocationTooLongForItsBufferIsCut) {
  MemoryRegistry::setLocation(first, std::string(200, '1'));
  EXPECT_EQ(std::string(127, '1'), locationOf(handleOf(first).get()).text);
}

TEST_F(AccessorTest, TheFirstChildAndTheFirstParentComeWithOneReference) {
  MemoryRegistry::attach(second, first);
  Handle child;
  EXPECT_EQ(kIOReturnSuccess,
            IORegistryEntryGetChildEntry(handleOf(top).get(), "IOService", child.receive()));
  EXPECT_EQ(first, MemoryRegistry::entryOf(child.get()));
  EXPECT_EQ(1U, MemoryRegistry::references(first));
  Handle parent;
  EXPECT_EQ(kIOReturnSuccess,
            IORegistryEntryGetParentEntry(handleOf(second).get(), "IOService", parent.receive()));
  EXPECT_EQ(top, MemoryRegistry::entryOf(parent.get()));
}

TEST_F(AccessorTest, WithoutChildOrParentThereIsNoDevice) {
  io_registry_entry_t found = 1;
  EXPECT_EQ(kIOReturnNoDevice,
            IORegistryEntryGetChildEntry(handleOf(first).get(), "IOService", &found));
  EXPECT_EQ(0U, found);
  found = 1;
  EXPECT_EQ(kIOReturnNoDevice,
            IORegistryEntryGetParentEntry(handleOf(root).get(), "IOService", &found));
  EXPECT_EQ(0U, found);
  EXPECT_EQ(kIOReturnNoDevice,
            IORegistryEntryGetChildEntry(handleOf(top).get(), "IODeviceTree", &found));
  EXPECT_EQ(kIOReturnNoDevice,
            IORegistryEntryGetParentEntry(handleOf(first).get(), nullptr, &found));
}

TEST_F(AccessorTest, TheRootIsNamedAndNumberedAsTheSystems) {
  EXPECT_EQ(0x100000100U, root);
  const auto handle = handleOf(root);
  EXPECT_TRUE(IOObjectConformsTo(handle.get(), "IORegistryEntry"));
  EXPECT_FALSE(IOObjectConformsTo(handle.get(), "IOService"));
}

TEST_F(AccessorTest, IDsGoUpAndAreNeverUsedAgain) {
  EXPECT_LT(first, second);
  MemoryRegistry::terminate(second);
  EXPECT_GT(add(top, "Third"), second);
}

TEST_F(AccessorTest, EveryOperationRefusesAHandleThatIsNotOfALivingEntry) {
  const auto held = handleOf(second);
  MemoryRegistry::terminate(second);
  const unsigned int released = MemoryRegistry::handle(first);
  IOObjectRelease(released);
  const auto iterator = walkFrom(top, Down);
  const struct {
    const char* what;
    io_object_t handle;
    kern_return_t error;
  } rows[] = {{"none", 0, MACH_SEND_INVALID_DEST},
              {"never given out", 0x12345678, MACH_SEND_INVALID_DEST},
              {"beyond all slots", 0x01FFFFFF, MACH_SEND_INVALID_DEST},
              {"released", released, MACH_SEND_INVALID_DEST},
              {"terminated", held.get(), MACH_SEND_INVALID_DEST},
              {"an iterator", iterator.get(), kIOReturnBadArgument}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    io_object_t out = 1;
    std::array<char, sizeof(io_string_t)> buffer{};
    EXPECT_EQ(row.error, IORegistryEntryGetChildEntry(row.handle, "IOService", &out));
    EXPECT_EQ(row.error, IORegistryEntryGetParentEntry(row.handle, "IOService", &out));
    EXPECT_EQ(row.error, IORegistryEntryGetChildIterator(row.handle, "IOService", &out));
    EXPECT_EQ(row.error, IORegistryEntryCreateIterator(row.handle, "IOService", Down, &out));
    EXPECT_EQ(0U, out);
    EXPECT_EQ(row.error, IORegistryEntryGetPath(row.handle, "IOService", buffer.data()));
    EXPECT_EQ(row.error, locationOf(row.handle).result);
    EXPECT_FALSE(IOObjectConformsTo(row.handle, "IOService"));
    EXPECT_EQ(nullptr,
              IORegistryEntryCreateCFProperty(row.handle, CFSTR("Key"), kCFAllocatorDefault, 0));
    EXPECT_EQ(0U, MemoryRegistry::entryOf(row.handle));
  }
}

}  // namespace
