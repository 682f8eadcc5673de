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

// A class by its number, and by the bit that stands for it among a class's ancestors.
struct ClassMark {
  ClassMark() = default;
  explicit ClassMark(std::uint32_t of)
      : number(of), word(of / 64U), bit(std::uint64_t{1} << (of % 64U)) {}

  std::uint32_t number = NoClassNumber;
  std::uint32_t word = 0;
  std::uint64_t bit = 0;
};

// The class names asked for last, each at a place that follows from its address: nearly all callers
// pass literals. What counts is the text, because an address may come to hold another. It is looked
// at a word at a time, the last one overlapping: memcmp would take several times as long.
class alignas(64) RecentClassName {
 public:
  static constexpr std::size_t Word = sizeof(std::uint64_t);
  static constexpr std::size_t Longest = 3 * Word;

  RecentClassName() = default;
  // From one to three words of text.
  RecentClassName(std::string_view text, std::uint32_t number)
      : _behindFirst(text.size() - Word),
        _first(wordAt(text.data())),
        _last(wordAt(text.data() + text.size() - Word)),
        _middle(text.size() > 2 * Word ? wordAt(text.data() + Word) : 0),
        _mark(number) {}

  bool is(const char* name, std::size_t length) const {
    const std::size_t behindFirst = length - Word;  // a shorter name's is like no other
    return behindFirst == _behindFirst && wordAt(name) == _first &&
           wordAt(name + behindFirst) == _last &&
           (behindFirst <= Word || wordAt(name + Word) == _middle);
  }
  const ClassMark& mark() const { return _mark; }

 private:
  static std::uint64_t wordAt(const char* text) {
    std::uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
  }

  std::size_t _behindFirst = 0;  // characters
  std::uint64_t _first = 0;
  std::uint64_t _last = 0;
  std::uint64_t _middle = 0;
  ClassMark _mark;
};
inline constexpr std::size_t RecentClassNames = 512;
inline std::array<RecentClassName, RecentClassNames> recentClassNames{};

inline RecentClassName& recentPlaceOf(const char* className) {
  return recentClassNames[reinterpret_cast<std::uintptr_t>(className) % RecentClassNames];
}

// For a name that is not among them, and may be from now on.
ClassMark classMarkOf(const char* className, std::size_t length);

}  // namespace MemoryRegistry
