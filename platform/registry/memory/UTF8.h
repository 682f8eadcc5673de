#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace MemoryRegistry {

// The length of a text in UTF-16 code units; -1 when it is not valid UTF-8.
long utf16Length(std::string_view text);

// The bytes that a character takes, by its first one. Valid UTF-8 only.
std::size_t characterSize(char first);
// The character that begins there. Valid UTF-8 only.
std::uint32_t characterAt(std::string_view text, std::size_t place);

std::string utf8OfMacRoman(std::string_view bytes);

}  // namespace MemoryRegistry
