#pragma once

#include <cstddef>
#include <string>

#include "platform/registry/memory/RegistryContent.h"
#include "platform/registry/memory/archive/ArchiveError.h"

// Archives: the content of one registry as `ioreg -a -l -w0 -i` prints it, an XML property list; or
// a binary property list of the same shape; or the text that `ioreg -l -w0` prints, with or without
// -i; or any of them packed by gzip. Which one it is, the first bytes say.
//
// Entries are told apart by IORegistryEntryID. An entry that is printed under several parents is
// one entry with several parents: its first print gives name, class and properties, the links are
// merged in the order of print, and a link is taken once. An integer that is not negative and below
// 2^31 has 32 bits, any other 64, since an archive keeps no widths.
//
// Ownership: the result is the caller's; nothing is kept.
// Thread:    any, one archive each.
// Failure:   ArchiveError, whose what() is one line. Of a refused archive nothing is returned.
namespace MemoryRegistry {

RegistryContent readArchive(const std::string& file);

// `nameForErrors` stands where readArchive has the file's name.
RegistryContent parseArchive(const char* data, std::size_t size, const std::string& nameForErrors);

}  // namespace MemoryRegistry
