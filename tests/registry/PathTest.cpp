#include <array>
#include <cstring>

#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::attach;
using MemoryRegistry::detach;

class PathTest : public RegistryFixture {
 protected:
  const EntryID model = add(root, "Model");
  const EntryID expert = add(model, "Expert");
  const EntryID bridge = addAt(expert, "PCI0", "0");
  const EntryID port = addAt(bridge, "RP05", "1C,4");

  static EntryID at(const std::string& path) {
    const auto entry = Handle::adopt(IORegistryEntryFromPath(kIOMasterPortDefault, path.c_str()));
    return MemoryRegistry::entryOf(entry.get());
  }

  struct Answer {
    kern_return_t result;
    std::string path;
  };
  static Answer pathOf(EntryID entry, const char* plane = "IOService") {
    std::array<char, sizeof(io_string_t)> buffer;
    buffer.fill('#');
    const auto result = IORegistryEntryGetPath(handleOf(entry).get(), plane, buffer.data());
    if (result != kIOReturnSuccess) {
      EXPECT_EQ('#', buffer.front()) << "the buffer was touched";
      return {result, ""};
    }
    return {result, buffer.data()};
  }
};

TEST_F(PathTest, IsRelativeToTheFirstChildOfTheRoot) {
  EXPECT_EQ("IOService:/", pathOf(model).path);
  EXPECT_EQ("IOService:/Expert", pathOf(expert).path);
  EXPECT_EQ("IOService:/Expert/PCI0@0/RP05@1C,4", pathOf(port).path);
}

TEST_F(PathTest, IsNotEscaped) {
  const EntryID odd = addAt(expert, "a/b c@d:\xC3\xA4", "7:8");
  EXPECT_EQ("IOService:/Expert/a/b c@d:\xC3\xA4@7:8", pathOf(odd).path);
  EXPECT_EQ(odd, at(pathOf(odd).path));
}

TEST_F(PathTest, NeitherTheRootNorADetachedEntryNorAnUnknownPlaneHasOne) {
  EXPECT_EQ(kIOReturnBadArgument, pathOf(root).result);
  EXPECT_EQ(kIOReturnBadArgument, pathOf(port, "IODeviceTree").result);
  EXPECT_EQ(kIOReturnBadArgument, pathOf(port, "").result);
  detach(bridge, expert);
  EXPECT_EQ(kIOReturnBadArgument, pathOf(bridge).result);
  EXPECT_EQ(kIOReturnBadArgument, pathOf(port).result);
}

TEST_F(PathTest, NothingBesideTheFirstChildOfTheRootHasOne) {
  const EntryID beside = add(root, "Beside");
  const EntryID below = add(beside, "Below");
  EXPECT_EQ(kIOReturnBadArgument, pathOf(beside).result);
  EXPECT_EQ(kIOReturnBadArgument, pathOf(below).result);
  EXPECT_EQ(0U, at("IOService:/Below"));
}

TEST_F(PathTest, TakesTheFirstParentStillPresent) {
  const EntryID second = add(expert, "Second");
  const EntryID set = add(port, "Set");
  const EntryID media = add(set, "Media");
  attach(set, second);
  EXPECT_EQ("IOService:/Expert/PCI0@0/RP05@1C,4/Set/Media", pathOf(media).path);
  detach(set, port);
  EXPECT_EQ("IOService:/Expert/Second/Set/Media", pathOf(media).path);
}

TEST_F(PathTest, HasAtMost509Characters) {
  // "IOService:/" and three times "/" and 124 characters, and what remains.
  const std::string name(124, 'n');
  const EntryID deep = add(add(add(model, name), name), name);
  const std::size_t used = pathOf(deep).path.size();
  const EntryID longest = add(deep, std::string(509 - used - 1, 'x'));
  EXPECT_EQ(509U, pathOf(longest).path.size());
  MemoryRegistry::setName(longest, std::string(509 - used, 'x'));
  EXPECT_EQ(kIOReturnBadArgument, pathOf(longest).result);
  EXPECT_EQ("", MemoryRegistry::path(longest));
}

TEST_F(PathTest, AComponentIsClippedAt128Characters) {
  const EntryID longName = addAt(model, std::string(200, 'n'), "1");
  EXPECT_EQ("IOService:/" + std::string(128, 'n'), pathOf(longName).path);
  const EntryID longLocation = addAt(model, "name", std::string(200, '1'));
  EXPECT_EQ("IOService:/name@" + std::string(123, '1'), pathOf(longLocation).path);
  const EntryID full = addAt(model, std::string(127, 'm'), "12");
  EXPECT_EQ("IOService:/" + std::string(127, 'm') + "@", pathOf(full).path);
}

TEST_F(PathTest, BelongsToALivingEntry) {
  std::array<char, sizeof(io_string_t)> buffer{};
  EXPECT_EQ(MACH_SEND_INVALID_DEST, IORegistryEntryGetPath(0, "IOService", buffer.data()));
  EXPECT_EQ(kIOReturnBadArgument,
            IORegistryEntryGetPath(walkFrom(model, 0).get(), "IOService", buffer.data()));
}

TEST_F(PathTest, TheCppInterfaceWritesTheSame) {
  EXPECT_EQ("IOService:/Expert/PCI0@0/RP05@1C,4", MemoryRegistry::path(port));
  EXPECT_EQ("", MemoryRegistry::path(root));
}

TEST_F(PathTest, LeadsToTheEntryItNames) {
  const struct {
    const char* path;
    EntryID entry;
  } rows[] = {
      {"", 0},
      {"IOService", 0},
      {"IOService:", 0},
      {"IOService:/", model},
      {"/", 0},
      {"/Expert", 0},
      {":/Expert", 0},
      {"Expert", 0},
      {"IODeviceTree:/Expert", 0},
      {"ioservice:/Expert", 0},
      {"APlaneWhoseNameIsFarTooLongToBeOne:/Expert", 0},
      {"IOService:Expert", 0},
      {"IOService:alias/Expert", 0},
      {"IOService:/Expert", expert},
      {"IOService:/Expert/", 0},
      {"IOService://Expert", 0},
      {"IOService:/Expert//PCI0", 0},
      {"IOService:/Expert/PCI0@0:something", 0},
      {"IOService:/Expert/PCI0:something", 0},
      {"IOService:/Expert/PCI0:", 0},
      {"IOService:/Expert/PCI0@0/", 0},
      {"IOService:/Nobody", 0},
      {"IOService:/Exper", 0},
      {"IOService:/Experts", 0},
      {"IOService:/expert", 0},
      {"IOService:/Model", 0},
      {"IOService:/Expert/PCI0@0", bridge},
      {"IOService:/Expert/PCI0", bridge},
      {"IOService:/Expert/PCI0@", 0},
      {"IOService:/Expert/PCI0@1", 0},
      {"IOService:/Expert@0", 0},
      {"IOService:/Expert/PCI0@0/RP05@1C,4", port},
      {"IOService:/Expert/PCI0/RP05", port},
      {"IOService:/Expert/@0", bridge},  // no name, the location alone
      {"IOService:/Expert/@00/@1C,4", port},
      {"IOService:/Expert/@1", 0},
      {"IOService:/Expert/@", 0},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.entry, at(row.path)) << row.path;
}

TEST_F(PathTest, AnEntryWithAnEmptyNameIsWrittenAndFoundByItsLocation) {
  const EntryID nameless = addAt(bridge, "any", "0:2");
  MemoryRegistry::setName(nameless, "");
  EXPECT_EQ("IOService:/Expert/PCI0@0/@0:2", MemoryRegistry::path(nameless));
  EXPECT_EQ(nameless, at("IOService:/Expert/PCI0@0/@0:2"));
}

TEST_F(PathTest, ComparesLocationsAsHexadecimalNumbers) {
  const std::string zeros(300, '0');
  const struct {
    std::string stored;
    std::string asked;
    bool same;
  } rows[] = {
      {"1", "1", true},
      {"1", "01", true},
      {"1", "1,0", true},
      {"1,0", "1", true},
      {"1", "1:0", true},
      {"1,2", "1:2", true},
      {"1,2", "1,3", false},
      {"1", "1,1", false},
      {"1C,4", "1c,4", true},
      {"ABCDEF", "abcdef", true},
      {"0", "0,0,0", true},
      {"1", zeros + "1", true},
      {"10000000000000001", "1", false},
      {"10000000000000001", "00010000000000000001", true},
      {"1", "", false},
      {"1", "x", false},
      {"x", "x", false},
      {"1-4", "1-4", false},
      {"1", "0x1", false},
      {"1", "1,", false},
      {"1", ",1", false},
      {"0,1", ",1", false},
      {"1", "1,,0", false},
      {"1", " 1", false},
      {"1", "1:", false},
      {"1", "10", false},
  };
  for (const auto& row : rows) {
    const EntryID entry = addAt(bridge, "Disk", row.stored);
    EXPECT_EQ(row.same ? entry : 0, at("IOService:/Expert/PCI0@0/Disk@" + row.asked))
        << row.stored << " against " << row.asked;
    MemoryRegistry::terminate(entry);
  }
}

TEST_F(PathTest, WithoutALocationLeadsToTheFirstOfThatName) {
  const EntryID first = addAt(bridge, "Disk", "5");
  const EntryID second = addAt(bridge, "Disk", "1");
  EXPECT_EQ(first, at("IOService:/Expert/PCI0/Disk"));
  EXPECT_EQ(second, at("IOService:/Expert/PCI0/Disk@1"));
}

TEST_F(PathTest, NamesWithSlashesAndAtSignsAreFound) {
  const EntryID slash = add(expert, "a/b");
  const EntryID sign = add(expert, "name@1");
  EXPECT_EQ(slash, at("IOService:/Expert/a/b"));
  EXPECT_EQ(sign, at("IOService:/Expert/name@1"));
}

TEST_F(PathTest, IsSearchedForWithoutGoingBack) {
  const EntryID first = add(expert, "Twin");
  const EntryID second = add(expert, "Twin");
  const EntryID below = add(second, "Below");
  EXPECT_EQ(first, at("IOService:/Expert/Twin"));
  EXPECT_EQ(0U, at("IOService:/Expert/Twin/Below"));
  detach(first, expert);
  EXPECT_EQ(below, at("IOService:/Expert/Twin/Below"));
}

TEST_F(PathTest, LeadsThroughAnyParent) {
  const EntryID second = add(expert, "Second");
  const EntryID set = add(port, "Set");
  attach(set, second);
  EXPECT_EQ(set, at("IOService:/Expert/PCI0/RP05/Set"));
  EXPECT_EQ(set, at("IOService:/Expert/Second/Set"));
}

TEST_F(PathTest, DoesNotLeadToWhatIsDetachedOrTerminated) {
  detach(bridge, expert);
  EXPECT_EQ(0U, at("IOService:/Expert/PCI0"));
  EXPECT_EQ(0U, at("IOService:/Expert/PCI0/RP05"));
  attach(bridge, expert);
  MemoryRegistry::terminate(bridge);
  EXPECT_EQ(0U, at("IOService:/Expert/PCI0"));
}

TEST_F(PathTest, LeadsNowhereInAnEmptyRegistry) {
  MemoryRegistry::reset();
  EXPECT_EQ(0U, at("IOService:/"));
  EXPECT_EQ(0U, at("IOService:/Expert"));
}

TEST_F(PathTest, GivesOneReference) {
  const auto entry = Handle::adopt(IORegistryEntryFromPath(kIOMasterPortDefault, "IOService:/"));
  EXPECT_EQ(1U, MemoryRegistry::references(model));
}

}  // namespace
