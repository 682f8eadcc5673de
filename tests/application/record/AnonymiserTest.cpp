#include "application/record/Anonymiser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/record/ArchiveWriter.h"
#include "application/record/Identity.h"

namespace ProgramTest {
namespace {

using nlohmann::json;
using Program::Anonymiser;
using Program::Identity;
using Program::RecordedEntry;
using Program::RegistryLook;
using testing::HasSubstr;
using testing::Not;

json bytes(const std::string& text) {
  return json::binary(std::vector<std::uint8_t>(text.begin(), text.end()));
}

RecordedEntry entryOf(const std::string& name, std::vector<std::string> inheritance,
                      json properties) {
  RecordedEntry entry;
  entry.id = 1;
  entry.name = name;
  entry.className = inheritance.back();
  entry.inheritance = std::move(inheritance);
  entry.properties = std::move(properties);
  return entry;
}

RecordedEntry service(json properties) {
  return entryOf("entry", {"IORegistryEntry", "IOService"}, std::move(properties));
}

RecordedEntry media(const std::string& name, json properties = json::object()) {
  return entryOf(name, {"IORegistryEntry", "IOService", "IOStorage", "IOMedia"},
                 std::move(properties));
}

// The properties of one entry, disguised.
json disguisedProperties(json properties) {
  return Anonymiser().disguised({{service(std::move(properties))}}).entries.front().properties;
}

const std::string UUID = "8F14E45F-CEEA-467A-9AB1-01D6D2D4E8BC";

TEST(Anonymiser, LeavesNothingOfWhatIdentifiesInTheFile) {
  const std::string raw = "\x8f\x14\xe4\x5f\xce\xea\x46\x7a\x9a\xb1\x01\xd6\xd2\xd4\xe8\xbc";
  RegistryLook look;
  look.entries.push_back(service({{"IOPlatformSerialNumber", "C02ABCDEFGHJ"},
                                  {"IOPlatformUUID", UUID},
                                  {"serial-number", bytes(std::string("GHJ\0C02ABCDEFGHJ", 16))},
                                  {"boot-args", "of=C02ABCDEFGHJ uuid=" + UUID},
                                  {"lower", "8f14e45f-ceea-467a-9ab1-01d6d2d4e8bc"},
                                  {"blob", bytes("##" + raw + "C02ABCDEFGHJ##")},
                                  {UUID, "a key"}}));
  look.entries.push_back(media("Holiday Films", {{"UUID", UUID}, {"path", "x/Holiday Films@0/y"}}));
  look.entries.push_back(service({{"kCGSSessionUserNameKey", "annamaria"},
                                  {"image", "/Users/annamaria/x.img"},
                                  {"Product", "Annamaria's Keyboard"},
                                  {"IOMACAddress", bytes("\x10\xdd\xb1\x01\x02\x03")},
                                  {"text", "10:dd:b1:01:02:03 and 10-DD-B1-01-02-03"},
                                  {"IO80211SSID", "Annas Network"},
                                  {"image-path", bytes("/private/secret")}}));
  look.entries.push_back(entryOf("options", {"IORegistryEntry", "IOService", "IODTNVRAM"},
                                 {{"anything", "a token"}, {"more", {{"x", bytes("a token")}}}}));
  look.entries.push_back(
      service({{"UID", 0x00030F1B7461E0A5},
               {"text", "0x00030f1b7461e0a5, 00030F1B7461E0A5"},
               {"DROM", bytes("\xff\xa5\xe0\x61\x74\x1b\x0f\x03" + std::string(1, '\0'))}}));
  for (std::size_t place = 1; place < look.entries.size(); ++place) {
    look.entries[place].id = place + 1;
    look.entries[0].children.push_back(place);
    look.entries[place].parents.push_back(0);
  }
  const RegistryLook found = Anonymiser().disguised(look);
  const std::string archive = archiveOf(found);
  for (const std::string& original :
       {std::string("C02ABCDEFGHJ"), UUID, std::string("8f14e45f-ceea"), std::string("Holiday"),
        std::string("annamaria"), std::string("Annamaria"), std::string("Annas Network"),
        std::string("10:dd:b1"), std::string("10-DD-B1"), std::string("a token"),
        std::to_string(0x00030F1B7461E0A5), std::string("30f1b7461e0a5"),
        std::string("30F1B7461E0A5")}) {
    EXPECT_THAT(archive, Not(HasSubstr(original)));
  }
  for (const RecordedEntry& entry : found.entries) {
    for (const auto& [key, value] : entry.properties.items()) {
      if (!value.is_binary()) continue;
      const auto& data = value.get_binary();
      const std::string text(data.begin(), data.end());
      for (const std::string& original :
           {raw, std::string("C02ABCDEFGHJ"), std::string("\x10\xdd\xb1\x01\x02\x03"),
            std::string("secret"), std::string("\xa5\xe0\x61\x74\x1b\x0f\x03")}) {
        EXPECT_THAT(text, Not(HasSubstr(original))) << key;
      }
    }
  }
}

TEST(Anonymiser, PutsTheSameStandInWhereverTheOriginalStood) {
  RegistryLook look;
  look.entries.push_back(media("Projects"));
  look.entries.push_back(service({{"AppleRAID-SetName", "Projects"},
                                  {"AppleRAID-SetUUID", UUID},
                                  {"AppleRAID-Members", {UUID, "other"}},
                                  {"path", "IOService:/A/Projects@0"},
                                  {"Serial Number", "      AB12"},
                                  {"disk", "AB12"}}));
  const RegistryLook found = Anonymiser().disguised(look);
  const json& properties = found.entries[1].properties;
  const std::string name = found.entries[0].name;
  EXPECT_NE("Projects", name);
  EXPECT_EQ(name, properties["AppleRAID-SetName"]);
  EXPECT_EQ("IOService:/A/" + name + "@0", properties["path"]);
  EXPECT_EQ(properties["AppleRAID-SetUUID"], properties["AppleRAID-Members"][0]);
  EXPECT_NE(UUID, properties["AppleRAID-SetUUID"]);
  EXPECT_EQ("other", properties["AppleRAID-Members"][1]);
  EXPECT_EQ("      " + properties["disk"].get<std::string>(), properties["Serial Number"]);
}

TEST(Anonymiser, KeepsItsStandInsFromLookToLook) {
  const RegistryLook look{{media("Projects", {{"UUID", UUID}})}};
  Anonymiser anonymiser;
  const RegistryLook first = anonymiser.disguised(look);
  anonymiser.disguised({{media("Another")}});
  EXPECT_TRUE(sameContent(first, anonymiser.disguised(look)));
  EXPECT_NE(first.entries[0].properties, Anonymiser().disguised(look).entries[0].properties);
}

TEST(Anonymiser, LeavesWhatTheMonitorReads) {
  const json kept = {{"AppleRAID-SetStatus", "Degraded"},
                     {"AppleRAID-MemberStatus", "Online"},
                     {"AppleRAID-LevelName", "Mirror"},
                     {"IOName", "pci-bridge"},
                     {"Content", "52414944-0000-11AA-AA11-00306543ECAC"},
                     {"Adapter Type", 0x100102},
                     {"Device Vendor ID", 0x100000000},
                     {"Device Model Name", "Two Bay"},
                     {"PCI Path", "IOService:/A/RP05@1C,4/IOPP"},
                     {"real", 0.5},
                     {"nothing", nullptr},
                     {"Whole", true}};
  EXPECT_EQ(kept, disguisedProperties(kept));
}

TEST(Anonymiser, AVolumeThatIsCalledLikeAStateChangesNoState) {
  RegistryLook look;
  look.entries.push_back(media("Online"));
  look.entries.push_back(
      service({{"AppleRAID-SetName", "Online"}, {"AppleRAID-SetStatus", "Online"}}));
  const RegistryLook found = Anonymiser().disguised(look);
  EXPECT_NE("Online", found.entries[1].properties["AppleRAID-SetName"]);
  EXPECT_EQ("Online", found.entries[1].properties["AppleRAID-SetStatus"]);
}

TEST(Anonymiser, NamesThatNobodyGaveStay) {
  EXPECT_FALSE(hasGivenName(media("EFI System Partition")));
  EXPECT_FALSE(hasGivenName(media("Maker 4TB Media", {{"Whole", true}})));
  EXPECT_TRUE(hasGivenName(media("Family Media", {{"Whole", false}})));
  EXPECT_TRUE(hasGivenName(media("Family Media", {{"Whole", true}, {"RAID", true}})));
  EXPECT_FALSE(hasGivenName(service(json::object())));
  EXPECT_TRUE(Program::namesAPerson("Anna\u2019s Phone"));
}

TEST(Anonymiser, KnowsWhatAKeyMeansHoweverItIsWritten) {
  const std::pair<const char*, Identity> rows[] = {
      {"USB Serial Number", Identity::Serial},
      {"serial-number", Identity::Serial},
      {"kUSBSerialNumberString", Identity::Serial},
      {"IOSerialBSDClientType", Identity::None},
      {"IOPlatformUUID", Identity::UUID},
      {"fmm-computer-name", Identity::Name},
      {"IO80211SSID", Identity::Name},
      {"IO80211BSSID", Identity::Address},
      {"local-mac-address", Identity::Address},
      {"IODisplayEDID", Identity::Secret},
      {"Content Hint", Identity::Fixed},
      {"PCI Path", Identity::None},
  };
  for (const auto& [key, identity] : rows)
    EXPECT_EQ(identity, Program::identityOf(key)) << key;
}

}  // namespace
}  // namespace ProgramTest
