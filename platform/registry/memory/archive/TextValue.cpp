#include "platform/registry/memory/archive/TextValue.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/registry/memory/archive/UnreadableText.h"
#include "platform/registry/memory/archive/ValueRules.h"

namespace MemoryRegistry {
namespace {

constexpr std::size_t npos = std::string_view::npos;

// A vector that grows has its elements twice for a moment.
constexpr std::uint64_t elementCost = 2 * sizeof(PropertyValue);
constexpr std::uint64_t itemCost = 2 * sizeof(Dictionary::value_type);
constexpr std::uint64_t containerCost = 64;

// Where a value stands: it decides what may follow, and so where a string ends.
enum class Within { Property, Dictionary, Sequence };

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

class Reader {
 public:
  Reader(std::string_view text, MemoryBudget& budget) : _text(text), _budget(budget) {}

  PropertyValue run() {
    PropertyValue value = read(Within::Property, 0);
    if (_at != _text.size()) fail();
    return value;
  }

 private:
  [[noreturn]] void fail() const {
    if (!_text.empty() && _text.back() == '$') {
      throw UnreadableText("a value that is cut off: the text was made without -w0");
    }
    throw UnreadableText("a value that cannot be read");
  }

  // ---- What follows ----

  // '\0' at the end; the text has none of its own.
  char peek(std::size_t at) const { return at < _text.size() ? _text[at] : '\0'; }

  bool isEnd(std::size_t at) const {
    return at >= _text.size() || std::string_view(",)}]").find(_text[at]) != npos;
  }

  bool endsSequence(std::size_t at) const { return peek(at) == ')' || peek(at) == ']'; }

  // An element that is printed as nothing included.
  bool startsElement(std::size_t at) const {
    const char c = peek(at);
    return (c >= '0' && c <= '9') || c == ',' || endsSequence(at) ||
           (c != '\0' && std::string_view("\"<{([YN").find(c) != npos);
  }

  bool startsItem(std::size_t at) const {
    if (peek(at) != '"') return false;
    const std::size_t end = _text.find('"', at + 1);
    return end != npos && peek(end + 1) == '=';
  }

  // Whether a string or data may end before `at`.
  bool mayEndBefore(std::size_t at, Within within) const {
    switch (within) {
      case Within::Property:
        return at == _text.size();
      case Within::Dictionary:
        return peek(at) == ',' ? startsItem(at + 1) : peek(at) == '}' && isEnd(at + 1);
      default:
        return peek(at) == ',' ? startsElement(at + 1) : endsSequence(at) && isEnd(at + 1);
    }
  }

  // The text up to the first `mark` behind which a value may end, which is passed too.
  std::string_view readUpTo(std::string_view mark, Within within) {
    std::size_t end = _text.find(mark, _at);
    while (end != npos && !mayEndBefore(end + mark.size(), within)) {
      end = _text.find(mark, end + 1);
    }
    if (end == npos) fail();
    const std::string_view content = _text.substr(_at, end - _at);
    _at = end + mark.size();
    return content;
  }

  bool take(char c) {
    if (peek(_at) != c) return false;
    ++_at;
    return true;
  }

  bool takeWord(std::string_view word) {
    if (_text.substr(_at, word.size()) != word) return false;
    _at += word.size();
    return true;
  }

  // ---- Values ----

  // Recursive; bounded by deepestValue.
  PropertyValue read(Within within, std::size_t depth) {
    switch (peek(_at)) {
      case '"':
        return readString(within);
      case '<':
        return readData(within);
      case '{':
        return readDictionary(depth + 1);
      case '(':
        return readSequence(')', depth + 1);
      case '[':
        return readSequence(']', depth + 1);
      default:
        return readScalar();
    }
  }

  PropertyValue readScalar() {
    if (isEnd(_at)) return Opaque{};
    if (takeWord("Yes")) return true;
    if (takeWord("No")) return false;
    const bool hexadecimal = takeWord("0x");
    std::uint64_t bits = 0;
    const char* const begin = _text.data() + _at;
    const auto [end, error] =
        std::from_chars(begin, _text.data() + _text.size(), bits, hexadecimal ? 16 : 10);
    if (error != std::errc()) fail();
    _at += static_cast<std::size_t>(end - begin);
    return numberOfUnknownWidth(bits);
  }

  PropertyValue readString(Within within) {
    ++_at;
    const std::string_view content = readUpTo("\"", within);
    takeText(_budget, content.size());
    return std::string(content);
  }

  PropertyValue readData(Within within) {
    ++_at;
    if (take('"')) return readPrintableData(readUpTo("\">", within));
    Data data;
    const std::size_t end = _text.find('>', _at);
    if (end == npos || (end - _at) % 2 != 0) fail();
    takeText(_budget, (end - _at) / 2);
    data.reserve((end - _at) / 2);
    for (; _at < end; _at += 2) {
      const int high = hexDigit(_text[_at]);
      const int low = hexDigit(_text[_at + 1]);
      if (high < 0 || low < 0) fail();
      data.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    ++_at;
    return data;
  }

  // Data that are nothing but texts, each ending in a NUL, are printed as these texts.
  PropertyValue readPrintableData(std::string_view texts) {
    constexpr std::string_view separator = "\",\"";
    takeText(_budget, texts.size() + 1);
    Data data;
    data.reserve(texts.size() + 1);
    while (true) {
      const std::size_t end = texts.find(separator);
      const std::string_view text = texts.substr(0, end);
      data.insert(data.end(), text.begin(), text.end());
      data.push_back(0);
      if (end == npos) return data;
      texts.remove_prefix(end + separator.size());
    }
  }

  PropertyValue readDictionary(std::size_t depth) {
    checkValueDepth(depth);
    _budget.take(containerCost);
    ++_at;
    Dictionary dictionary;
    if (take('}')) return dictionary;
    do {
      _budget.take(itemCost);
      std::string key = readKey();
      dictionary.emplace_back(std::move(key), read(Within::Dictionary, depth));
    } while (take(','));
    if (!take('}')) fail();
    keepLastOfEachKey(dictionary);
    return dictionary;
  }

  std::string readKey() {
    if (!take('"')) fail();
    const std::size_t end = _text.find("\"=", _at);
    if (end == npos) fail();
    std::string key(_text.substr(_at, end - _at));
    takeText(_budget, key.size());
    _at = end + 2;
    return key;
  }

  PropertyValue readSequence(char closer, std::size_t depth) {
    checkValueDepth(depth);
    _budget.take(containerCost);
    ++_at;
    Array array;
    if (take(closer)) return array;
    do {
      _budget.take(elementCost);
      array.push_back(read(Within::Sequence, depth));
    } while (take(','));
    if (!take(closer)) fail();
    return array;
  }

  std::string_view _text;
  std::size_t _at = 0;
  MemoryBudget& _budget;
};

}  // namespace

PropertyValue readTextValue(std::string_view text, MemoryBudget& budget) {
  return Reader(text, budget).run();
}

void takeText(MemoryBudget& budget, std::size_t size) {
  constexpr std::size_t withinTheObject = 15;
  constexpr std::size_t allocation = 32;
  if (size > withinTheObject) budget.take(size + allocation);
}

}  // namespace MemoryRegistry
