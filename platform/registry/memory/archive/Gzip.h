#pragma once

#include <string_view>

#include "platform/registry/memory/archive/ArchiveFile.h"

namespace MemoryRegistry {

// True for bytes that begin as gzip data do.
bool isGzip(std::string_view bytes);

// What gzip data unpack to, all members of it. Throws Refusal when they are cut off, damaged, or
// followed by anything else, when they hold nothing, and when they unpack to more than `largest`
// bytes; until then little more than twice `largest` is taken, whatever they stand for.
FileContent unpackGzip(std::string_view bytes, std::size_t largest);

}  // namespace MemoryRegistry
