#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace MemoryRegistry {

// The elements of property lists and their tags, which are compared eight bytes at one stroke.

enum class Element {
  None,
  PList,
  Dictionary,
  Array,
  Key,
  String,
  Integer,
  Real,
  Date,
  Data,
  Boolean
};

using Word = std::uint64_t;

constexpr bool firstByteIsLowest = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

inline Word wordAt(const char* at) {
  Word word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

// The word that starts with a text of up to eight bytes; its other bits are zero.
constexpr Word wordOf(std::string_view text) {
  Word word = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t place = firstByteIsLowest ? i : sizeof word - 1 - i;
    word |= Word{static_cast<unsigned char>(text[i])} << (8 * place);
  }
  return word;
}

// The bits of a word that its first bytes take.
constexpr Word maskOf(std::size_t bytes) {
  const std::string_view ones("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
  return wordOf(ones.substr(0, bytes));
}

constexpr Word repeated(char c) {
  return Word{static_cast<unsigned char>(c)} * 0x0101010101010101U;
}

// How many tabs stand in front of the word's other bytes.
inline std::size_t leadingTabs(Word word) {
  const Word others = word ^ repeated('\t');
  if (others == 0) return sizeof word;
  const int bits = firstByteIsLowest ? __builtin_ctzll(others) : __builtin_clzll(others);
  return static_cast<std::size_t>(bits) / 8;
}

// An element's name, made from the rest of a tag that starts with it.
class ElementName {
 public:
  constexpr ElementName(std::string_view tag, Element element)
      : _text(tag), _element(element), _tag(wordOf(tag)), _mask(maskOf(tag.size())) {}

  constexpr std::string_view name() const { return _text.substr(0, _text.size() - 1); }
  constexpr Element element() const { return _element; }

  // The name and ">".
  constexpr std::string_view tag() const { return _text; }
  // Whether the word starts with it.
  bool startsTag(Word word) const { return (word & _mask) == _tag; }

 private:
  std::string_view _text;
  Element _element;
  Word _tag;
  Word _mask;
};

inline constexpr ElementName elementNames[] = {
    {"key>", Element::Key},         {"integer>", Element::Integer}, {"string>", Element::String},
    {"dict>", Element::Dictionary}, {"data>", Element::Data},       {"array>", Element::Array},
    {"true>", Element::Boolean},    {"false>", Element::Boolean},   {"real>", Element::Real},
    {"date>", Element::Date},       {"plist>", Element::PList},
};

// Finds a tag's name by two of its bytes, so that one comparison is enough.
class ElementTable {
 public:
  constexpr ElementTable() {
    for (const ElementName& name : elementNames)
      _names[place(name.tag()[0], name.tag()[3])] = &name;
  }

  // Whether each name has a place of its own.
  constexpr bool isComplete() const {
    for (const ElementName& name : elementNames) {
      if (_names[place(name.tag()[0], name.tag()[3])] != &name) return false;
    }
    return true;
  }

  // The name that starts the text, of a word's size at least, with ">" behind it; null for none.
  const ElementName* find(const char* text) const {
    const ElementName* const name = _names[place(text[0], text[3])];
    return name != nullptr && name->startsTag(wordAt(text)) ? name : nullptr;
  }

 private:
  static constexpr std::size_t places = 32;

  static constexpr std::size_t place(char first, char fourth) {
    return (static_cast<unsigned char>(first) + 3U * static_cast<unsigned char>(fourth)) % places;
  }

  const ElementName* _names[places] = {};
};

inline constexpr ElementTable elementTable;
static_assert(elementTable.isComplete());

struct Tag {
  const ElementName* name = nullptr;
  bool isEnd = false;
  bool isEmpty = false;
  Element element() const { return name == nullptr ? Element::None : name->element(); }
};

}  // namespace MemoryRegistry
