#include "platform/registry/memory/archive/Archive.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstring>

#include "platform/registry/memory/archive/ArchiveFile.h"
#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/BinaryPropertyListCheck.h"
#include "platform/registry/memory/archive/EntryReader.h"
#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/XMLPropertyListCheck.h"

namespace MemoryRegistry {
namespace {

bool startsWith(const char* data, std::size_t size, const char* prefix) {
  const std::size_t length = std::strlen(prefix);
  return size >= length && std::memcmp(data, prefix, length) == 0;
}

PropertyList parseXML(const char* data, std::size_t size) {
  // libplist takes a byte order mark for text.
  if (startsWith(data, size, "\xEF\xBB\xBF")) {
    data += 3;
    size -= 3;
  }
  checkXMLPropertyList(data, size);
  plist_t list = nullptr;
  plist_from_xml(data, static_cast<std::uint32_t>(size), &list);
  return PropertyList(list);
}

PropertyList parseBinary(const char* data, std::size_t size) {
  checkBinaryPropertyList(data, size);
  plist_t list = nullptr;
  plist_from_bin(data, static_cast<std::uint32_t>(size), &list);
  return PropertyList(list);
}

PropertyList parsePropertyList(const char* data, std::size_t size) {
  if (size == 0) throw Refusal("is empty");
  if (size > largestArchive) throw Refusal("is larger than 512 MiB");
  PropertyList list =
      startsWith(data, size, "bplist") ? parseBinary(data, size) : parseXML(data, size);
  if (!list) throw Refusal("is not a property list that can be parsed");
  return list;
}

}  // namespace

RegistryContent readArchive(const std::string& file) {
  PropertyList list;
  FileContent content = readFile(file);
  try {
    list = parsePropertyList(content.bytes.get(), content.size);
    // Before the entries are made, so that the file's text and they are never held together.
    content.bytes.reset();
    return readEntries(list.get());
  } catch (const Refusal& refusal) {
    throw ArchiveError(file, refusal.what());
  }
}

RegistryContent parseArchive(const char* data, std::size_t size, const std::string& nameForErrors) {
  try {
    return readEntries(parsePropertyList(data, size).get());
  } catch (const Refusal& refusal) {
    throw ArchiveError(nameForErrors, refusal.what());
  }
}

}  // namespace MemoryRegistry
