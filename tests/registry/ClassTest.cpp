#include "tests/registry/RegistryFixture.h"

namespace {

using MemoryRegistry::EntryDescription;

class ClassTest : public RegistryFixture {
 protected:
  EntryID addWith(const std::string& className, std::optional<std::uint32_t> state,
                  std::vector<std::string> inheritance = {}) {
    EntryDescription description;
    description.className = className;
    description.state = state;
    description.inheritance = std::move(inheritance);
    return MemoryRegistry::add(root, description);
  }
  static bool conforms(EntryID entry, const char* className) {
    return IOObjectConformsTo(handleOf(entry).get(), className) != 0;
  }
};

TEST_F(ClassTest, AnEntryConformsToItsClassAndEveryAncestor) {
  const struct {
    const char* className;
    std::vector<const char*> ancestors;
  } rows[] = {
      {"IOPCIDevice", {"IOService", "IORegistryEntry", "OSObject"}},
      {"IOPCI2PCIBridge", {"IOPCIBridge", "IOService"}},
      {"IOBlockStorageDriver", {"IOStorage"}},
      {"IOMedia", {"IOStorage"}},
      {"IOGUIDPartitionScheme", {"IOPartitionScheme", "IOStorage"}},
      {"IOFDiskPartitionScheme", {"IOPartitionScheme"}},
      {"IOApplePartitionScheme", {"IOPartitionScheme"}},
      {"IOFilterScheme", {"IOStorage"}},
      {"IOMediaBSDClient", {"IOService"}},
      {"AppleRAIDMember", {"IOStorage"}},
      {"AppleRAIDSet", {"AppleRAIDMember", "IOStorage"}},
      {"AppleRAIDStripeSet", {"AppleRAIDSet", "AppleRAIDMember"}},
      {"AppleRAIDMirrorSet", {"AppleRAIDSet", "AppleRAIDMember"}},
      {"AppleRAIDConcatSet", {"AppleRAIDSet", "AppleRAIDMember"}},
      {"AppleLVMGroup", {"AppleRAIDSet", "AppleRAIDMember"}},
      {"AppleLVMVolume", {"IOMedia"}},
      {"AppleRAID", {"IOService"}},
      {"AppleRAIDUserClient", {"IOUserClient"}},
      {"IOThunderboltPort", {"IOThunderboltNub"}},
      {"IOThunderboltSwitchType2", {"IOThunderboltSwitch", "IOThunderboltNub"}},
      {"IOThunderboltSwitchType3", {"IOThunderboltSwitch"}},
      {"IOThunderboltSwitchType5", {"IOThunderboltSwitch"}},
      {"IOThunderboltSwitchIntelJHL8440", {"IOThunderboltSwitch"}},
      {"IOAHCIBlockStorageDevice", {"IOBlockStorageDevice"}},
      {"AppleIntelPchSeriesAHCI", {"AppleAHCI"}},
      {"AppleIntelPchSeriesAHCIPort", {"AppleAHCIPort", "IOAHCIPort", "IOAHCIPortInterface"}},
  };
  for (const auto& row : rows) {
    const EntryID entry = addWith(row.className, std::nullopt);
    EXPECT_TRUE(conforms(entry, row.className));
    for (const char* ancestor : row.ancestors) {
      EXPECT_TRUE(conforms(entry, ancestor)) << row.className << " " << ancestor;
    }
    EXPECT_FALSE(conforms(entry, "IOUSBHostDevice")) << row.className;
  }
}

TEST_F(ClassTest, ASetIsAMemberByClassAndAMemberIsNoSet) {
  EXPECT_TRUE(conforms(addWith("AppleRAIDMirrorSet", {}), "AppleRAIDMember"));
  EXPECT_FALSE(conforms(addWith("AppleRAIDMember", {}), "AppleRAIDSet"));
}

TEST_F(ClassTest, AClassUnknownIsAServiceWhenItHasAState) {
  const EntryID service = addWith("SomeDriver", MemoryRegistry::Settled);
  EXPECT_TRUE(conforms(service, "IOService"));
  EXPECT_TRUE(conforms(service, "SomeDriver"));
  const EntryID node = addWith("SomeDriver", std::nullopt);
  EXPECT_FALSE(conforms(node, "IOService"));
  EXPECT_TRUE(conforms(node, "IORegistryEntry"));
  EXPECT_TRUE(conforms(node, "SomeDriver"));
}

TEST_F(ClassTest, AGivenInheritanceHoldsBeforeTheTable) {
  const EntryID entry =
      addWith("IOMedia", std::nullopt, {"IORegistryEntry", "IOService", "Invented", "IOMedia"});
  EXPECT_TRUE(conforms(entry, "Invented"));
  EXPECT_FALSE(conforms(entry, "IOStorage"));
  EXPECT_TRUE(conforms(addWith("IOMedia", std::nullopt), "IOStorage"));
}

TEST_F(ClassTest, AnInheritanceEndsInTheClassItself) {
  EXPECT_EQ("an inheritance that does not end in the class itself", refusal([&] {
              addWith("IOMedia", std::nullopt, {"IORegistryEntry", "IOService"});
            }));
  EXPECT_EQ("an entry without a class", refusal([&] { addWith("", std::nullopt); }));
  EXPECT_EQ(1U, MemoryRegistry::entryCount());
}

TEST_F(ClassTest, TheOverridingClassNameIsConformedToAsWell) {
  const EntryID entry = addWith("IOMedia", std::nullopt);
  MemoryRegistry::setProperty(entry, "IOClassNameOverride", "Overriding");
  EXPECT_TRUE(conforms(entry, "Overriding"));
  EXPECT_TRUE(conforms(entry, "IOMedia"));
  MemoryRegistry::setProperty(entry, "IOClassNameOverride", 5);
  EXPECT_FALSE(conforms(entry, "Overriding"));
  MemoryRegistry::setProperty(entry, "IOClassNameOverride", "Again");
  MemoryRegistry::removeProperty(entry, "IOClassNameOverride");
  EXPECT_FALSE(conforms(entry, "Again"));
  EntryDescription description;
  description.className = "IOMedia";
  description.properties = {{"IOClassNameOverride", "FromTheStart"}};
  EXPECT_TRUE(conforms(MemoryRegistry::add(root, description), "FromTheStart"));
}

TEST_F(ClassTest, AClassNameGoesByItsTextEvenWhereTheAddressIsTheSame) {
  const EntryID entry = addWith("IOMedia", std::nullopt);
  char name[] = "IOMedia";
  EXPECT_TRUE(conforms(entry, name));
  name[0] = 'X';
  EXPECT_FALSE(conforms(entry, name));
  name[0] = 'I';
  EXPECT_TRUE(conforms(entry, name));
}

TEST_F(ClassTest, SoDoesOneOfAnyLengthThatDiffersInOneCharacter) {
  const std::string longest = "AClassWhoseNameIsLongerThanMost";
  for (std::size_t length = 1; length <= longest.size(); ++length) {
    std::string name = longest.substr(0, length);
    const EntryID entry = addWith(name, std::nullopt);
    for (char& letter : name) {
      EXPECT_TRUE(conforms(entry, name.c_str())) << name;
      const char before = std::exchange(letter, '-');
      EXPECT_FALSE(conforms(entry, name.c_str())) << name;
      letter = before;
    }
  }
}

TEST_F(ClassTest, AShortNameIsReadNoFurtherThanItsEnd) {
  const EntryID entry = addWith("Disk", std::nullopt);
  for (const std::string& name : {std::string("Disk"), std::string("Dis"), std::string()}) {
    const std::vector<char> exact(name.c_str(), name.c_str() + name.size() + 1);
    EXPECT_EQ(name == "Disk", conforms(entry, exact.data())) << name;
  }
}

TEST_F(ClassTest, ManyClassesAreToldApart) {
  EntryIDs entries;
  for (int number = 0; number < 300; ++number) {
    entries.push_back(addWith("Class" + std::to_string(number), std::nullopt));
  }
  for (std::size_t number = 0; number < entries.size(); ++number) {
    const std::string own = "Class" + std::to_string(number);
    const std::string other = "Class" + std::to_string((number + 1) % entries.size());
    EXPECT_TRUE(conforms(entries[number], own.c_str()));
    EXPECT_FALSE(conforms(entries[number], other.c_str()));
  }
}

}  // namespace
