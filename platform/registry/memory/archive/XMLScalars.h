#pragma once

#include <string_view>

// What stands within an element of an XML property list. libplist reads a malformed number or
// malformed data as some other value and says nothing, so they are looked at before.
namespace MemoryRegistry {

// Decimal without leading zeros (libplist takes those for octal) or hexadecimal, with an optional
// sign, within 64 bits signed or unsigned.
bool isInteger(std::string_view text);

bool isReal(std::string_view text);

// Base64, blanks anywhere.
bool isBase64(std::string_view text);

// A reference to a character or to one of XML's five entities, from behind "&" to before ";".
bool isReference(std::string_view text);

inline bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace MemoryRegistry
