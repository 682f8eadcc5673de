#include "application/record/RegistryReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/registry/memory/MemoryRegistry.h"

namespace ProgramTest {
namespace {

using MemoryRegistry::EntryID;
using MemoryRegistry::Operation;
using Program::readRegistry;
using Program::RecordedEntry;
using Program::RegistryLook;
using testing::ElementsAre;
using testing::IsEmpty;

class RegistryReaderTest : public testing::Test {
 protected:
  ~RegistryReaderTest() override {
    MemoryRegistry::failNothing();
    const auto accounts = MemoryRegistry::accounts();
    EXPECT_THAT(accounts.entries, IsEmpty());
    EXPECT_EQ(0U, accounts.iterators);
    EXPECT_EQ(0U, accounts.values);
    MemoryRegistry::reset();
  }

  static EntryID add(EntryID parent, std::vector<std::string> chain,
                     std::optional<std::uint32_t> state = MemoryRegistry::Settled) {
    MemoryRegistry::EntryDescription description;
    description.className = chain.back();
    description.inheritance = std::move(chain);
    description.state = state;
    return MemoryRegistry::add(parent, std::move(description));
  }

  static RecordedEntry entryOf(const RegistryLook& look, EntryID id) {
    for (const RecordedEntry& entry : look.entries) {
      if (entry.id == id) return entry;
    }
    ADD_FAILURE() << id << " is missing";
    return {};
  }

  const EntryID root = (MemoryRegistry::reset(), MemoryRegistry::root());
  const EntryID driver = add(root, {"IORegistryEntry", "IOService", "Driver"});
};

TEST_F(RegistryReaderTest, TellsWhatAnEntryIs) {
  MemoryRegistry::setName(driver, "name");
  MemoryRegistry::setLocation(driver, "1C,4");
  const RecordedEntry entry = entryOf(readRegistry().value(), driver);
  EXPECT_EQ("name", entry.name);
  EXPECT_EQ("1C,4", entry.location);
  EXPECT_EQ("Driver", entry.className);
  EXPECT_THAT(entry.inheritance, ElementsAre("IORegistryEntry", "IOService", "Driver"));
  EXPECT_TRUE(entry.isService);
  EXPECT_TRUE(entry.isMatched);
}

TEST_F(RegistryReaderTest, TellsWhatMatchingFinds) {
  const EntryID unregistered = add(root, {"IORegistryEntry", "IOService", "Member"}, 0);
  const EntryID inactive = add(root, {"IORegistryEntry", "IOService", "Member"}, 0x1F);
  const EntryID noService = add(root, {"IORegistryEntry", "Node"}, std::nullopt);
  const RegistryLook look = readRegistry().value();
  EXPECT_FALSE(entryOf(look, unregistered).isMatched);
  EXPECT_FALSE(entryOf(look, inactive).isMatched);
  EXPECT_FALSE(entryOf(look, noService).isMatched);
  EXPECT_FALSE(entryOf(look, noService).isService);
}

TEST_F(RegistryReaderTest, KeepsTheOrderOfChildrenAndOfParents) {
  const EntryID other = add(root, {"IORegistryEntry", "IOService", "Other"});
  const EntryID shared = add(other, {"IORegistryEntry", "IOService", "Shared"});
  MemoryRegistry::attach(shared, driver);
  const RegistryLook look = readRegistry().value();
  const auto idsAt = [&look](const std::vector<std::size_t>& places) {
    std::vector<EntryID> ids;
    for (const std::size_t place : places)
      ids.push_back(look.entries.at(place).id);
    return ids;
  };
  EXPECT_THAT(idsAt(look.entries.front().children), ElementsAre(driver, other));
  EXPECT_THAT(idsAt(entryOf(look, shared).parents), ElementsAre(other, driver));
}

TEST_F(RegistryReaderTest, CopiesValuesOfEveryKind) {
  using MemoryRegistry::setProperty;
  setProperty(driver, "boolean", true);
  setProperty(driver, "small", MemoryRegistry::number32(7));
  setProperty(driver, "large", MemoryRegistry::number64(0xFFFFFFFFFFFFFFFB));
  setProperty(driver, "real", 0.1);
  setProperty(driver, "text", "gr\u00fc\u00df");
  setProperty(driver, "data", MemoryRegistry::Data{0, 255});
  setProperty(driver, "nothing", MemoryRegistry::Data{});
  setProperty(driver, "list", MemoryRegistry::Array{1, MemoryRegistry::Dictionary{{"k", "v"}}});
  setProperty(driver, "date", MemoryRegistry::Opaque{});
  const nlohmann::json wanted = {{"boolean", true},
                                 {"small", 7},
                                 {"large", -5},
                                 {"real", 0.1},
                                 {"text", "gr\u00fc\u00df"},
                                 {"data", nlohmann::json::binary({0, 255})},
                                 {"nothing", nlohmann::json::binary({})},
                                 {"list", {1, {{"k", "v"}}}},
                                 {"date", nullptr}};
  EXPECT_EQ(wanted, entryOf(readRegistry().value(), driver).properties);
}

TEST_F(RegistryReaderTest, AnEntryThatBearsAnotherClassesNameKeepsItsAncestorsThatCount) {
  const EntryID thing =
      add(root, {"IORegistryEntry", "IOService", "IOThunderboltNub", "IOThunderboltSwitch", "X"});
  MemoryRegistry::setProperty(thing, "IOClassNameOverride", "Y");
  EXPECT_THAT(entryOf(readRegistry().value(), thing).inheritance,
              ElementsAre("IORegistryEntry", "IOService", "IOThunderboltSwitch", "Y"));
}

TEST_F(RegistryReaderTest, AnEntryWithAnotherChainThanItsClassKeepsItsAncestorsThatCount) {
  const EntryID less = add(root, {"IORegistryEntry", "Driver"}, std::nullopt);
  const EntryID more =
      add(root, {"IORegistryEntry", "IOService", "IOStorage", "IOMedia", "Driver"});
  const RegistryLook look = readRegistry().value();
  EXPECT_THAT(entryOf(look, less).inheritance, ElementsAre("IORegistryEntry", "Driver"));
  EXPECT_THAT(entryOf(look, more).inheritance,
              ElementsAre("IORegistryEntry", "IOService", "IOStorage", "IOMedia", "Driver"));
}

TEST_F(RegistryReaderTest, ANameThatWasCutWithinACharacterLosesItsRest) {
  MemoryRegistry::setName(driver, std::string(126, 'n') + "\u00fc");
  EXPECT_EQ(std::string(126, 'n'), entryOf(readRegistry().value(), driver).name);
}

TEST_F(RegistryReaderTest, WhatFailsOnceIsTriedAgain) {
  MemoryRegistry::setLocation(driver, "1");
  const RegistryLook clean = readRegistry().value();
  for (const Operation operation :
       {Operation::IORegistryCreateIterator, Operation::IOServiceGetMatchingServices,
        Operation::IORegistryGetRootEntry, Operation::IORegistryEntryGetChildIterator,
        Operation::IORegistryEntryGetRegistryEntryID, Operation::IORegistryEntryGetNameInPlane,
        Operation::IORegistryEntryGetLocationInPlane, Operation::IOObjectGetClass,
        Operation::IORegistryEntryCreateCFProperties, Operation::IOIteratorNext,
        Operation::IOIteratorIsValid}) {
    SCOPED_TRACE(static_cast<unsigned>(operation));
    MemoryRegistry::failCall(operation, 1, MemoryRegistry::Repeat::Once);
    const auto look = readRegistry();
    ASSERT_TRUE(look);
    EXPECT_TRUE(sameContent(clean, *look));
  }
}

TEST_F(RegistryReaderTest, WhatFailsForGoodIsNoLook) {
  MemoryRegistry::failCall(Operation::IORegistryEntryCreateCFProperties, 2,
                           MemoryRegistry::Repeat::FromThenOn);
  EXPECT_FALSE(readRegistry());
}

TEST_F(RegistryReaderTest, EveryDifferenceCountsButThatOfCounters) {
  MemoryRegistry::setProperty(driver, "Statistics", 1);
  MemoryRegistry::setProperty(driver, "Value", 1);
  const RegistryLook before = readRegistry().value();
  MemoryRegistry::setProperty(driver, "Statistics", 2);
  EXPECT_TRUE(sameContent(before, readRegistry().value()));
  MemoryRegistry::setProperty(driver, "HIDIdleTime", 2);
  EXPECT_TRUE(sameContent(before, readRegistry().value()));
  const auto expectDifference = [&](const char* what) {
    EXPECT_FALSE(sameContent(before, readRegistry().value())) << what;
  };
  MemoryRegistry::setProperty(driver, "Value", 2);
  expectDifference("a value");
  MemoryRegistry::removeProperty(driver, "Value");
  expectDifference("a property less");
  MemoryRegistry::setProperty(driver, "Value", 1);
  MemoryRegistry::setProperty(driver, "Another", 1);
  expectDifference("a property more");
  MemoryRegistry::removeProperty(driver, "Another");
  MemoryRegistry::setName(driver, "other");
  expectDifference("a name");
  MemoryRegistry::setName(driver, "Driver");
  MemoryRegistry::setState(driver, 0);
  expectDifference("a state");
  MemoryRegistry::setState(driver, MemoryRegistry::Settled);
  EXPECT_TRUE(sameContent(before, readRegistry().value()));
  add(driver, {"IORegistryEntry", "New"});
  expectDifference("an entry");
}

}  // namespace
}  // namespace ProgramTest
