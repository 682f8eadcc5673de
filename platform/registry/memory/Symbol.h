#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace MemoryRegistry {

inline constexpr std::uint32_t NoClassNumber = UINT32_MAX;

struct SymbolText {
  explicit SymbolText(std::string_view of) : text(of) {}

  const std::string text;
  std::uint32_t classNumber = NoClassNumber;  // see ClassTable
};

// A text of which there is one copy in the process, for ever: equal texts are equal pointers.
// Names, locations, class names and property keys are symbols.
using Symbol = const SymbolText*;

Symbol intern(std::string_view text);

// Null when the text was never interned.
Symbol findSymbol(std::string_view text);

// A small number for a symbol that names a class, the same for ever.
std::uint32_t classNumberOf(Symbol className);

// The class names asked for last as C strings, by their address. Nearly all callers pass literals.
// The text is compared all the same, because an address may come to hold another.
struct RecentClassName {
  const char* address;
  const char* text;
  std::uint32_t number;
};
inline constexpr std::size_t RecentClassNames = 64;
extern std::array<RecentClassName, RecentClassNames> recentClassNames;

inline RecentClassName& recentPlaceOf(const char* className) {
  const auto bits = reinterpret_cast<std::uintptr_t>(className);
  return recentClassNames[(bits ^ (bits >> 6U)) % RecentClassNames];
}

// The same for a name given as a C string that was not asked for lately.
[[gnu::cold]] std::uint32_t newClassNumberOf(const char* className);

inline std::uint32_t classNumberOf(const char* className) {
  const RecentClassName& recent = recentPlaceOf(className);
  if (recent.address == className && std::strcmp(recent.text, className) == 0) return recent.number;
  return newClassNumberOf(className);
}

}  // namespace MemoryRegistry
