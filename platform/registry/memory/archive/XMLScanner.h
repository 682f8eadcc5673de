#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/registry/memory/archive/XMLTags.h"

namespace MemoryRegistry {

// Goes through the text of an XML property list, tag by tag and text by text, and throws Refusal
// where it is not well formed. The text is the caller's. What nearly every tag and text looks like
// is read here, the rest by functions of its own.
class XMLScanner {
 public:
  XMLScanner(const char* data, std::size_t size)
      : _begin(data), _end(data + size), _at(data), _reference(referenceFrom(data)) {}

  bool atEnd() const { return _at == _end; }
  std::size_t size() const { return static_cast<std::size_t>(_end - _begin); }

  // Up to the first tag. A document type with declarations of its own is refused.
  void skipProlog();
  void skipBlanksAndComments();

  // The next tag, with what stands before it.
  Tag readTag() {
    skipIndentation();
    if (left() >= longestUsualTag && *_at == '<') {
      const bool isEnd = _at[1] == '/';
      const char* const text = _at + 1 + (isEnd ? 1 : 0);
      if (const ElementName* const name = elementTable.find(text)) {
        _at = text + name->tag().size();
        return {name, isEnd, false};
      }
    }
    return readUnusualTag();
  }

  struct Text {
    std::string_view raw;          // references and all
    std::uint64_t references = 0;  // how many
  };

  // Up to the element's end tag.
  Text readText(Tag tag) {
    Text text;
    const char* const begin = _at;
    while (true) {
      const char* const piece = _at;
      _at = find(_at, '<');
      if (_reference < _at) text.references += countReferences(piece, tag);
      if (left() > 1 && _at[1] == '/') break;
      skipWithinText(tag);
    }
    text.raw = {begin, static_cast<std::size_t>(_at - begin)};
    return text;
  }

  void readEndTag(Tag begin) {
    if (left() >= longestUsualTag && begin.name->startsTag(wordAt(_at + 2))) {
      _at += 2 + begin.name->tag().size();
    } else {
      readUnusualEndTag(begin);
    }
  }

  // Reads digits that are surely an integer, and its end tag; returns how many, or 0 when something
  // else stands here.
  std::size_t readPlainInteger() {
    constexpr std::size_t surelyFits = 19;
    constexpr std::string_view end = "</integer>";
    if (left() < surelyFits + 1 + end.size()) return 0;
    std::size_t digits = 0;
    while (digits <= surelyFits && _at[digits] >= '0' && _at[digits] <= '9')
      ++digits;
    const bool isOctal = *_at == '0' && digits > 1;
    if (digits == 0 || digits > surelyFits || isOctal) return 0;
    if (std::memcmp(_at + digits, end.data(), end.size()) != 0) return 0;
    _at += digits + end.size();
    return digits;
  }

  [[noreturn]] void fail(const char* reason) const;

 private:
  static constexpr std::size_t longestUsualTag = sizeof("</") - 1 + sizeof(Word);

  std::size_t left() const { return static_cast<std::size_t>(_end - _at); }
  bool startsWith(std::string_view text) const;
  const char* find(const char* from, char c) const {
    const void* found =
        from < _end ? std::memchr(from, c, static_cast<std::size_t>(_end - from)) : nullptr;
    if (found == nullptr) failAtEnd();
    return static_cast<const char*>(found);
  }

  // A line's end and the next line's indentation, which is more than half of what ioreg prints.
  void skipIndentation() {
    const char* at = _at;
    if (at != _end && *at == '\n') ++at;
    while (static_cast<std::size_t>(_end - at) >= sizeof(Word)) {
      const std::size_t tabs = leadingTabs(wordAt(at));
      at += tabs;
      if (tabs < sizeof(Word)) break;
    }
    _at = at;
  }
  void skipMarked(std::string_view begin, std::string_view end);
  void skipWithinText(Tag tag);

  Tag readUnusualTag();
  const ElementName* readName();
  void skipAttributes();
  void readUnusualEndTag(Tag begin);

  std::uint64_t countReferences(const char* piece, Tag tag);
  std::string_view referenceName() const;
  const char* referenceFrom(const char* from) const;

  [[noreturn]] static void failAtEnd();

  const char* _begin;
  const char* _end;
  const char* _at;
  const char* _reference;  // the next "&"
};

}  // namespace MemoryRegistry
