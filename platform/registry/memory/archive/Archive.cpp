#include "platform/registry/memory/archive/Archive.h"

#include <plist/plist.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/registry/memory/archive/ArchiveFile.h"
#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/BinaryPropertyListCheck.h"
#include "platform/registry/memory/archive/EntryReader.h"
#include "platform/registry/memory/archive/Gzip.h"
#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/RegistryText.h"
#include "platform/registry/memory/archive/XMLPropertyListCheck.h"

namespace MemoryRegistry {
namespace {

bool startsWith(std::string_view bytes, std::string_view prefix) {
  return bytes.substr(0, prefix.size()) == prefix;
}

bool looksLikePropertyList(std::string_view bytes) {
  if (startsWith(bytes, "bplist")) return true;
  const std::size_t begin = bytes.find_first_not_of("\xEF\xBB\xBF \t\r\n");
  return begin != std::string_view::npos && bytes[begin] == '<';
}

// What people name instead of the file in it.
void refuseOtherFormats(std::string_view bytes) {
  const struct {
    std::size_t place;
    std::string_view mark;
    const char* reason;
  } formats[] = {
      {0, "\xFF\xFE", "is a text in UTF-16: convert it to UTF-8"},
      {0, "\xFE\xFF", "is a text in UTF-16: convert it to UTF-8"},
      {0, "PK\x03\x04", "is a zip archive: unpack it, and name the file of ioreg in it"},
      {257, "ustar", "is a tar archive: unpack it, and name the file of ioreg in it"},
  };
  for (const auto& format : formats) {
    if (bytes.size() >= format.place && startsWith(bytes.substr(format.place), format.mark)) {
      throw Refusal(format.reason);
    }
  }
}

PropertyList parseXML(std::string_view bytes, std::uint64_t memoryLimit) {
  // libplist takes a byte order mark for text.
  if (startsWith(bytes, "\xEF\xBB\xBF")) bytes.remove_prefix(3);
  checkXMLPropertyList(bytes.data(), bytes.size(), memoryLimit);
  plist_t list = nullptr;
  plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &list);
  return PropertyList(list);
}

PropertyList parseBinary(std::string_view bytes, std::uint64_t memoryLimit) {
  checkBinaryPropertyList(bytes.data(), bytes.size(), memoryLimit);
  plist_t list = nullptr;
  plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &list);
  return PropertyList(list);
}

PropertyList parsePropertyList(std::string_view bytes, std::uint64_t memoryLimit) {
  PropertyList list =
      startsWith(bytes, "bplist") ? parseBinary(bytes, memoryLimit) : parseXML(bytes, memoryLimit);
  if (!list) throw Refusal("is not a property list that can be parsed");
  return list;
}

// `owner` holds the bytes, or nothing when they are somebody else's.
RegistryContent readPlain(std::string_view bytes, std::uint64_t memoryLimit, FileContent& owner) {
  refuseOtherFormats(bytes);
  if (!looksLikePropertyList(bytes)) {
    if (isRegistryText(bytes)) return readRegistryText(bytes, memoryLimit);
    throw Refusal("is not a property list, nor a text of ioreg");
  }
  const PropertyList list = parsePropertyList(bytes, memoryLimit);
  // Before the entries are made, so that the file's text and they are never held together.
  owner.bytes.reset();
  return readEntries(list.get());
}

// Packed or not, the size of the file says how much memory it may take. A quarter for the packed
// text leaves most of it for the entries.
RegistryContent readGzip(std::string_view bytes, FileContent& owner) {
  const std::uint64_t limit = memoryLimit(bytes.size());
  FileContent unpacked = unpackGzip(
      bytes, static_cast<std::size_t>(std::min<std::uint64_t>(limit / 4, largestArchive)));
  owner.bytes.reset();
  try {
    return readPlain({unpacked.bytes.get(), unpacked.size}, limit, unpacked);
  } catch (const TooRepetitive&) {
    throw Refusal("would take more memory than its size allows: unpack it first");
  } catch (const Refusal& refusal) {
    throw Refusal(std::string("unpacked: ") + refusal.what());
  }
}

RegistryContent read(std::string_view bytes, FileContent& owner) {
  if (bytes.empty()) throw Refusal("is empty");
  if (bytes.size() > largestArchive) throw Refusal("is larger than 512 MiB");
  return isGzip(bytes) ? readGzip(bytes, owner)
                       : readPlain(bytes, memoryLimit(bytes.size()), owner);
}

}  // namespace

RegistryContent readArchive(const std::string& file) {
  FileContent content = readFile(file);
  try {
    return read({content.bytes.get(), content.size}, content);
  } catch (const Refusal& refusal) {
    throw ArchiveError(file, refusal.what());
  }
}

RegistryContent parseArchive(const char* data, std::size_t size, const std::string& nameForErrors) {
  FileContent none;
  try {
    return read({data, size}, none);
  } catch (const Refusal& refusal) {
    throw ArchiveError(nameForErrors, refusal.what());
  }
}

}  // namespace MemoryRegistry
