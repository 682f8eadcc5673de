#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "platform/registry/memory/archive/Gzip.h"
#include "tests/archive/Support.h"
#include "tests/archive/TextWriter.h"

using MemoryRegistry::Array;
using MemoryRegistry::Dictionary;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::readArchive;
using MemoryRegistry::RegistryContent;

namespace {

const std::string imacText = TEXTS "/imac15,1-osx10.10.0.ioreg.txt.gz";
const std::string imacArchive = RECORDINGS "/imac15,1-osx10.10.0.converted-archive.plist.gz";
const std::string macMiniArchive = RECORDINGS "/macmini6,2-osx10.8.2.converted-archive-i.plist.gz";
const std::string macBookText = TEXTS "/macbookpro15,2-macos10.15.3.ioreg.txt.gz";

std::string unpacked(const std::string& packed) {
  const auto content = MemoryRegistry::unpackGzip(packed, 1U << 30U);
  return {content.bytes.get(), content.size};
}

PropertyValue sorted(const PropertyValue& value);

// Property lists have their keys in order, texts as the system has them.
Dictionary sorted(const Dictionary& dictionary) {
  Dictionary result;
  for (const auto& [key, value] : dictionary)
    result.emplace_back(key, sorted(value));
  std::sort(result.begin(), result.end(),
            [](const auto& a, const auto& b) { return a.first < b.first; });
  return result;
}

PropertyValue sorted(const PropertyValue& value) {
  if (const auto* dictionary = std::get_if<Dictionary>(&value.variant())) {
    return sorted(*dictionary);
  }
  if (const auto* array = std::get_if<Array>(&value.variant())) {
    Array result;
    for (const PropertyValue& element : *array)
      result.push_back(sorted(element));
    return result;
  }
  return value;
}

// As a text shows it: whether the first publish and match have been is not to be seen.
std::uint32_t shown(std::uint32_t state) {
  using namespace MemoryRegistry;
  return ((state & Registered) != 0 ? Registered | FirstPublish : 0U) |
         ((state & Matched) != 0 ? Matched | FirstMatch : 0U) | (state & Inactive);
}

// What the two forms of one registry have in common: all but the order of keys, and the inheritance
// of a class without a base, which a text can't tell from one that is not printed.
RegistryContent comparable(RegistryContent content) {
  for (auto& entry : content.entries) {
    entry.description.properties = sorted(entry.description.properties);
    if (entry.description.inheritance.size() == 1) entry.description.inheritance.clear();
    if (entry.description.state) entry.description.state = shown(*entry.description.state);
  }
  return content;
}

// ioreg prints none into its text.
RegistryContent withoutFractions(RegistryContent content) {
  const auto isFraction = [](const auto& property) {
    return std::holds_alternative<double>(property.second.variant());
  };
  for (auto& entry : content.entries) {
    auto& properties = entry.description.properties;
    properties.erase(std::remove_if(properties.begin(), properties.end(), isFraction),
                     properties.end());
  }
  return content;
}

std::vector<std::string> filesOfRecordings() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(RECORDINGS)) {
    const std::string file = entry.path().string();
    if (entry.is_regular_file() && entry.path().extension() == ".plist" &&
        entry.path().parent_path() != RECORDINGS) {
      files.push_back(file);
    }
  }
  return files;
}

std::size_t countOfClass(const RegistryContent& content, const std::string& prefix) {
  return static_cast<std::size_t>(
      std::count_if(content.entries.begin(), content.entries.end(), [&](const auto& entry) {
        return entry.description.className.substr(0, prefix.size()) == prefix;
      }));
}

const RegistryContent::Entry& entryOfClass(const RegistryContent& content,
                                           const std::string& name) {
  return *std::find_if(content.entries.begin(), content.entries.end(),
                       [&](const auto& entry) { return entry.description.className == name; });
}

}  // namespace

TEST(RealTexts, TheTextAndTheArchiveOfOneMachineGiveTheSameRegistry) {
  const RegistryContent text = comparable(readArchive(imacText));
  const RegistryContent archive = comparable(readArchive(imacArchive));
  ASSERT_EQ(514U, text.entries.size());
  ASSERT_EQ(archive.entries.size(), text.entries.size());
  for (std::size_t i = 0; i < text.entries.size(); ++i) {
    const auto& printed = text.entries[i].description;
    const auto& listed = archive.entries[i].description;
    EXPECT_EQ(listed.name, printed.name);
    EXPECT_EQ(listed.state, printed.state);
    ASSERT_EQ(listed.properties.size(), printed.properties.size()) << *listed.name;
    for (std::size_t j = 0; j < listed.properties.size(); ++j) {
      EXPECT_TRUE(listed.properties[j] == printed.properties[j])
          << *listed.name << ", " << listed.properties[j].first;
    }
  }
  EXPECT_TRUE(text == archive);
}

TEST(RealTexts, AnArchiveWithInheritancesGivesTheSameRegistryFromItsText) {
  const RegistryContent archive = readArchive(macMiniArchive);
  ASSERT_EQ(502U, archive.entries.size());
  for (const char* lineEnd : {"\n", "\r\n"}) {
    EXPECT_TRUE(comparable(parse(writeText(archive, {true, lineEnd}))) == comparable(archive));
  }
}

TEST(RealTexts, EveryRecordedRegistryGivesTheSameFromItsText) {
  const auto files = filesOfRecordings();
  ASSERT_LE(50U, files.size());
  for (const std::string& file : files) {
    const RegistryContent archive = comparable(withoutFractions(readArchive(file)));
    EXPECT_TRUE(comparable(parse(writeText(archive, {true, "\n"}))) == archive) << file;
  }
}

// What becomes of a text on its way to whom reads it.
TEST(RealTexts, ACopyWithAHeadingAndOtherEndsOfLinesReadsAsTheOriginal) {
  for (const std::string& file : {imacText, macBookText}) {
    const std::string original = unpacked(readText(file));
    std::string copy = "\xEF\xBB\xBF$ ioreg -l -w0\r\n\r\n";
    for (const char c : original)
      copy += c == '\n' ? "\r\n" : std::string(1, c);
    copy += "\r\n   \r\n";
    EXPECT_TRUE(parse(original) == parse(copy)) << file;
    EXPECT_TRUE(parse(original) == parse("IOService\n" + original)) << file;
  }
}

TEST(RealTexts, ACopyThatIsCutOffIsRefusedWithTheLineThatItEndsIn) {
  const std::string original = unpacked(readText(imacText));
  const std::string cut = original.substr(0, original.find("\"IOConsoleUsers\""));
  EXPECT_EQ("it: line 9: a value that cannot be read", reasonAgainst(cut));
}

TEST(RealTexts, ALaterSystemsTextReadsAsItIs) {
  const RegistryContent content = readArchive(macBookText);
  EXPECT_EQ(1002U, content.entries.size());
  EXPECT_EQ(2U, countOfClass(content, "IOThunderboltSwitch"));
  EXPECT_EQ(22U, countOfClass(content, "IOThunderboltPort"));
  EXPECT_EQ(34U, countOfClass(content, "IOPCIDevice"));
  // Strings that hold ends of lines and quotes, a set, and a line of 639,081 characters.
  const auto& wireless = entryOfClass(content, "AppleBCMWLANCore");
  EXPECT_TRUE(*property(wireless, "CLMVersion") ==
              PropertyValue("API: 18.1\nData: Oly.Maui\nCompiler: 1.40.2\nClmImport: 1.43.2\n"
                            "Customization: v4 Final 180511\nCreation: 2019-12-06 10:59:52\n"));
  EXPECT_TRUE(*property(wireless, "AppleBCMWLAN.BuildTagGit") ==
              PropertyValue("\"AppleBCMWLANV3-445.4\""));
  std::size_t longest = 0;
  for (const auto& entry : content.entries) {
    for (const auto& [key, value] : entry.description.properties) {
      if (const auto* data = std::get_if<MemoryRegistry::Data>(&value.variant()))
        longest = std::max(longest, data->size());
    }
  }
  EXPECT_EQ(319'520U, longest);
}
