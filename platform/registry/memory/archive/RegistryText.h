#pragma once

#include <cstdint>
#include <string_view>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// True when one of the first lines of these bytes is that of an entry.
bool isRegistryText(std::string_view bytes);

// The entries of a registry as `ioreg -l -w0` prints it for people, with or without -i:
//
//     +-o Root  <class IORegistryEntry, id 0x100000100, retain 9>
//       | {
//       |   "OS Build Version" = "14A389"
//       | }
//       |
//       +-o iMac15,1  <class IOPlatformExpertDevice, id 0x100000110, registered, matched, ...>
//
// Lines before the first entry that have nothing of one are skipped: a heading, a prompt. Nothing
// may follow the last entry but blank lines.
//
// The column of "+-o" gives the depth; the bars mean nothing. Neither names nor strings are
// escaped: a string goes on until the next property or the end of the entry's properties, wherever
// it holds quotes or ends of lines.
//
// Throws Refusal, with the number of the line where it helps, when the text is not understood or
// ends in the middle of an entry, and when reading it would take more than `memoryLimit` bytes.
RegistryContent readRegistryText(std::string_view bytes, std::uint64_t memoryLimit);

}  // namespace MemoryRegistry
