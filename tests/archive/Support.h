#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/registry/memory/archive/Archive.h"

// A property list around `content`, as ioreg writes it.
std::string propertyList(const std::string& content);

// An archive whose root has the ID 1, with `more` in its dictionary.
std::string archive(const std::string& more = "");

// The dictionary of an entry of class IOService.
std::string entry(const std::string& id, const std::string& more = "");

// The key of the children and the array of them.
std::string children(const std::string& entries);

std::string repeated(const std::string& text, std::size_t times);

MemoryRegistry::RegistryContent parse(const std::string& archive);

// What is wrong with the archive; empty when nothing is.
std::string reasonAgainst(const std::string& archive);

// The same list in the binary format.
std::string binaryTwin(const std::string& xml);

// The property of an entry; null when it has none of that key.
const MemoryRegistry::PropertyValue* property(const MemoryRegistry::RegistryContent::Entry& entry,
                                              const std::string& key);

namespace MemoryRegistry {
bool operator==(const PropertyValue& a, const PropertyValue& b);
bool operator==(const RegistryContent& a, const RegistryContent& b);
}  // namespace MemoryRegistry

// The IDs of the entries at these places.
std::vector<MemoryRegistry::EntryID> ids(const MemoryRegistry::RegistryContent& content,
                                         const std::vector<std::size_t>& places);

// A folder of its own for a test, gone with it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path() const { return _path.string(); }
  std::string write(const std::string& name, const std::string& text) const;

 private:
  std::filesystem::path _path;
};

std::string readText(const std::string& file);
