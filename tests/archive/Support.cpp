#include "tests/archive/Support.h"

#include <plist/plist.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <type_traits>

using MemoryRegistry::ArchiveError;
using MemoryRegistry::EntryID;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;

std::string propertyList(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n" +
         content + "\n</plist>\n";
}

std::string archive(const std::string& more) { return propertyList(entry("1", more)); }

std::string entry(const std::string& id, const std::string& more) {
  return "<dict><key>IOObjectClass</key><string>IOService</string>" + more +
         "<key>IORegistryEntryID</key><integer>" + id + "</integer></dict>";
}

std::string children(const std::string& entries) {
  return "<key>IORegistryEntryChildren</key><array>" + entries + "</array>";
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i)
    result += text;
  return result;
}

RegistryContent parse(const std::string& archive) {
  return MemoryRegistry::parseArchive(archive.data(), archive.size(), "it");
}

std::string reasonAgainst(const std::string& archive) {
  try {
    parse(archive);
  } catch (const ArchiveError& error) {
    return error.what();
  }
  return {};
}

std::string binaryTwin(const std::string& xml) {
  plist_t list = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &list);
  if (list == nullptr) throw std::invalid_argument("libplist can't parse the XML");
  char* bytes = nullptr;
  std::uint32_t size = 0;
  plist_to_bin(list, &bytes, &size);
  std::string binary(bytes, size);
  plist_to_bin_free(bytes);
  plist_free(list);
  return binary;
}

namespace MemoryRegistry {

bool operator==(const PropertyValue& a, const PropertyValue& b) {
  if (a.variant().index() != b.variant().index()) return false;
  return std::visit(
      [&b](const auto& value) {
        using Value = std::decay_t<decltype(value)>;
        const auto& other = std::get<Value>(b.variant());
        if constexpr (std::is_same_v<Value, Number>) {
          return value.bits == other.bits && value.width == other.width;
        } else if constexpr (std::is_same_v<Value, Opaque>) {
          return true;
        } else {
          return value == other;
        }
      },
      a.variant());
}

bool operator==(const RegistryContent& a, const RegistryContent& b) {
  if (a.entries.size() != b.entries.size()) return false;
  for (std::size_t i = 0; i < a.entries.size(); ++i) {
    const auto& x = a.entries[i];
    const auto& y = b.entries[i];
    const auto& d = x.description;
    const auto& e = y.description;
    const bool equal = x.id == y.id && x.children == y.children && x.parents == y.parents &&
                       d.className == e.className && d.name == e.name && d.location == e.location &&
                       d.inheritance == e.inheritance && d.state == e.state &&
                       d.properties == e.properties;
    if (!equal) return false;
  }
  return true;
}

}  // namespace MemoryRegistry

const PropertyValue* property(const RegistryContent::Entry& entry, const std::string& key) {
  for (const auto& [name, value] : entry.description.properties) {
    if (name == key) return &value;
  }
  return nullptr;
}

std::vector<EntryID> ids(const RegistryContent& content, const std::vector<std::size_t>& places) {
  std::vector<EntryID> result;
  for (const std::size_t place : places)
    result.push_back(content.entries.at(place).id);
  return result;
}

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "archive-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  _path = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(_path, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& text) const {
  const auto file = _path / name;
  std::ofstream(file, std::ios::binary) << text;
  return file.string();
}

std::string readText(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("can't open " + file);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}
