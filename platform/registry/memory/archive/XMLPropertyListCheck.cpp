#include "platform/registry/memory/archive/XMLPropertyListCheck.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"
#include "platform/registry/memory/archive/XMLScalars.h"
#include "platform/registry/memory/archive/XMLTags.h"

namespace MemoryRegistry {
namespace {

// libplist moves the rest of a text for each reference in it (bytes moved), and looks through what
// is there already for each key of a large dictionary (bytes compared). About a second each.
constexpr std::uint64_t largestReferenceCost = 4'000'000'000;
constexpr std::uint64_t largestLookUpCost = 4'000'000'000;
constexpr std::size_t ordinaryDictionary = 500;

struct Container {
  Element element = Element::None;
  bool hasKey = false;  // a dictionary whose last key waits for its value
  std::size_t keys = 0;
  std::size_t keyBytes = 0;
};

class Check {
 public:
  Check(const char* data, std::size_t size, std::uint64_t memoryLimit)
      : _begin(data), _end(data + size), _at(data), _memoryLimit(memoryLimit) {
    findReference(_begin);
  }

  void run() {
    if (std::memchr(_begin, 0, size()) != nullptr) {
      throw Refusal("is not a property list: it has a zero byte");
    }
    if (!isUTF8(_begin, size())) throw Refusal("is not a property list: its text is not UTF-8");
    skipProlog();
    readList();
    skipBlanksAndComments();
    if (_at != _end) fail("something follows the list");
    checkCosts();
  }

 private:
  std::size_t size() const { return static_cast<std::size_t>(_end - _begin); }
  std::size_t left() const { return static_cast<std::size_t>(_end - _at); }

  [[noreturn]] void fail(const char* reason) const {
    const auto line = static_cast<std::size_t>(std::count(_begin, _at, '\n')) + 1;
    throw Refusal("is not a property list that can be parsed: line " + decimal(line) + ": " +
                  reason);
  }
  [[noreturn]] static void failAtEnd() {
    throw Refusal("is not a complete property list: it ends in the middle");
  }

  bool startsWith(std::string_view text) const {
    return left() >= text.size() && std::memcmp(_at, text.data(), text.size()) == 0;
  }

  const char* find(const char* from, char c) const {
    const void* found =
        from < _end ? std::memchr(from, c, static_cast<std::size_t>(_end - from)) : nullptr;
    if (found == nullptr) failAtEnd();
    return static_cast<const char*>(found);
  }

  // ---- Between elements ----

  // Skips `<begin ... end>`; both marks must not overlap, since readers differ on that.
  void skipMarked(std::string_view begin, std::string_view end) {
    const std::string_view rest(_at, left());
    const std::size_t found = rest.find(end, begin.size());
    if (found == std::string_view::npos) failAtEnd();
    const std::size_t overlap = rest.find(end, 1);
    if (overlap < begin.size()) fail("a comment or instruction is cut short");
    _at += found + end.size();
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

  void skipBlanksAndComments() {
    skipIndentation();
    const bool isUsualTag = left() > 1 && *_at == '<' && _at[1] != '!' && _at[1] != '?';
    if (!isUsualTag) skipUnusual();
  }

  // Whatever else stands between elements. Apart, so that the usual way stays short.
  [[gnu::noinline]] void skipUnusual() {
    while (_at != _end) {
      if (isBlank(*_at)) {
        ++_at;
      } else if (*_at == '<' && left() > 1 && _at[1] == '!' && startsWith("<!--")) {
        skipMarked("<!--", "-->");
      } else if (*_at == '<' && left() > 1 && _at[1] == '?') {
        skipMarked("<?", "?>");
      } else {
        return;
      }
    }
  }

  void skipProlog() {
    skipBlanksAndComments();
    if (_at == _end || *_at != '<') throw Refusal("is not a property list");
    if (!startsWith("<!DOCTYPE")) return;
    const char* const end = find(_at, '>');
    const std::string_view declaration(_at + 1, static_cast<std::size_t>(end - _at) - 1);
    // Entities of its own could hide anything.
    if (declaration.find_first_of("[<") != std::string_view::npos) {
      fail("the document type has declarations of its own");
    }
    _at = end + 1;
    skipBlanksAndComments();
  }

  // ---- Tags ----

  static constexpr std::size_t longestUsualTag = sizeof("</") - 1 + sizeof(Word);

  Tag readTag() {
    if (_at == _end) failAtEnd();
    if (*_at != '<') fail("text stands between elements");
    if (left() >= longestUsualTag) {
      const bool isEnd = _at[1] == '/';
      const char* const text = _at + (isEnd ? 2 : 1);
      const Word word = wordAt(text);
      for (const ElementName& name : elementNames) {
        if (!name.startsTag(word)) continue;
        _at = text + name.tagSize();
        return {&name, isEnd, false};
      }
    }
    return readUnusualTag();
  }

  // Letter by letter.
  [[gnu::noinline]] Tag readUnusualTag() {
    ++_at;
    Tag tag;
    if (_at != _end && *_at == '/') {
      tag.isEnd = true;
      ++_at;
    }
    tag.name = readName();
    if (tag.element() == Element::PList && !tag.isEnd) skipAttributes();
    while (_at != _end && isBlank(*_at))
      ++_at;
    if (_at != _end && *_at == '/' && !tag.isEnd) {
      tag.isEmpty = true;
      ++_at;
    }
    if (_at == _end) failAtEnd();
    if (*_at != '>') fail("a tag that property lists don't have");
    ++_at;
    return tag;
  }

  const ElementName* readName() {
    const char* const begin = _at;
    while (_at != _end && *_at >= 'a' && *_at <= 'z')
      ++_at;
    const std::string_view name(begin, static_cast<std::size_t>(_at - begin));
    for (const ElementName& candidate : elementNames) {
      if (candidate.name() == name) return &candidate;
    }
    if (_at == _end) failAtEnd();
    fail("a tag that property lists don't have");
  }

  void skipAttributes() {
    const char* const end = find(_at, '>');
    if (std::find(_at, end, '<') != end || end[-1] == '/') fail("a list without content");
    _at = end;
  }

  // ---- Elements ----

  void readList() {
    const Tag list = readTag();
    if (list.element() != Element::PList || list.isEnd) fail("<plist> is missing");
    skipBlanksAndComments();
    readElement(readTag());
    while (!_open.empty()) {
      skipBlanksAndComments();
      readElement(readTag());
    }
    skipBlanksAndComments();
    const Tag end = readTag();
    if (end.element() != Element::PList || !end.isEnd) fail("</plist> is missing");
  }

  void readElement(Tag tag) {
    if (tag.isEnd) return close(tag);
    if (tag.element() == Element::Key) return readKey(tag);
    if (!_open.empty() && _open.back().element == Element::Dictionary) {
      if (!_open.back().hasKey) fail("a value without a key");
      _open.back().hasKey = false;
    }
    switch (tag.element()) {
      case Element::Dictionary:
      case Element::Array:
        _cost += containerCost;
        return open(tag);
      case Element::PList:
        fail("<plist> within <plist>");
      default:
        _cost += textCost;
        return readScalar(tag);
    }
  }

  void open(Tag tag) {
    if (tag.isEmpty) return;
    if (_open.size() == deepestContainer) {
      throw Refusal("is nested deeper than " + decimal(deepestEntry) + " levels");
    }
    Container container;
    container.element = tag.element();
    _open.push_back(container);
  }

  void close(Tag tag) {
    if (_open.empty() || tag.element() != _open.back().element)
      fail("an end tag without its begin");
    const Container& container = _open.back();
    if (container.hasKey) fail("a key without a value");
    if (container.keys > ordinaryDictionary) {
      _lookUpCost += container.keys * (container.keyBytes + 16 * container.keys);
      if (_lookUpCost > largestLookUpCost) throw Refusal("has a dictionary with too many keys");
    }
    _open.pop_back();
  }

  void readKey(Tag tag) {
    if (_open.empty() || _open.back().element != Element::Dictionary || _open.back().hasKey) {
      fail("a key out of place");
    }
    // libplist rejects an empty element here, though not an empty key.
    if (tag.isEmpty) fail("an empty key");
    Container& container = _open.back();
    const std::size_t length = readText(tag).size();
    container.hasKey = true;
    ++container.keys;
    container.keyBytes += length;
    _cost += keyCost + 2 * length;
  }

  void readScalar(Tag tag) {
    const std::string_view text = tag.isEmpty ? std::string_view() : readText(tag);
    switch (tag.element()) {
      case Element::Integer:
        if (!isInteger(text)) fail("an integer that cannot be read");
        break;
      case Element::Real:
        if (!isReal(text)) fail("a real number that cannot be read");
        break;
      case Element::Data:
        if (!isBase64(text)) fail("data that is no base64");
        break;
      case Element::Boolean:
        if (!text.empty()) fail("text within a boolean");
        break;
      default:
        break;
    }
    _cost += 2 * text.size();
  }

  // ---- Text ----

  // The raw text of an element up to its end tag, which is read too.
  std::string_view readText(Tag tag) {
    const char* const begin = _at;
    std::uint64_t references = 0;
    while (true) {
      const char* const piece = _at;
      _at = find(_at, '<');
      if (_reference < _at) references += countReferences(piece, tag);
      if (left() > 1 && _at[1] == '/') break;
      skipWithinText(tag);
    }
    const std::string_view text(begin, static_cast<std::size_t>(_at - begin));
    if (references != 0) countReferenceCost(references * text.size());
    readEndTag(tag);
    return text;
  }

  void readEndTag(Tag begin) {
    if (left() >= longestUsualTag && begin.name->startsTag(wordAt(_at + 2))) {
      _at += 2 + begin.name->tagSize();
    } else if (readTag().name != begin.name) {
      fail("an end tag without its begin");
    }
  }

  void countReferenceCost(std::uint64_t cost) {
    _referenceCost += cost;
    if (_referenceCost > largestReferenceCost) throw Refusal("has a text with too many references");
  }

  static bool isText(Tag tag) {
    return tag.element() == Element::String || tag.element() == Element::Key;
  }

  [[gnu::noinline]] void skipWithinText(Tag tag) {
    if (isText(tag) && startsWith("<!--")) return skipMarked("<!--", "-->");
    if (isText(tag) && startsWith("<![CDATA[")) return skipMarked("<![CDATA[", "]]>");
    if (left() < 9) failAtEnd();
    fail("a tag within text");
  }

  // Those from `piece` to here, each checked.
  [[gnu::noinline]] std::uint64_t countReferences(const char* piece, Tag tag) {
    if (_reference < piece) findReference(piece);
    std::uint64_t count = 0;
    for (; _reference < _at; findReference(_reference + 1)) {
      if (!isText(tag) || !isReference(referenceName())) fail("a reference that cannot be read");
      ++count;
    }
    return count;
  }

  std::string_view referenceName() const {
    constexpr std::size_t longest = 32;
    const std::string_view rest(_reference + 1, static_cast<std::size_t>(_at - _reference) - 1);
    const std::size_t end = rest.substr(0, longest).find(';');
    return rest.substr(0, end == std::string_view::npos ? 0 : end);
  }

  // The next "&" of the whole list, so that the many texts without one cost nothing.
  void findReference(const char* from) {
    const auto* found =
        static_cast<const char*>(std::memchr(from, '&', static_cast<std::size_t>(_end - from)));
    _reference = found == nullptr ? _end : found;
  }

  void checkCosts() const {
    if (_cost + size() > _memoryLimit) {
      throw TooRepetitive();
    }
  }

  const char* _begin;
  const char* _end;
  const char* _at;
  std::uint64_t _memoryLimit;
  const char* _reference = nullptr;  // the next "&"
  std::vector<Container> _open;
  std::uint64_t _cost = 0;
  std::uint64_t _lookUpCost = 0;
  std::uint64_t _referenceCost = 0;
};

}  // namespace

void checkXMLPropertyList(const char* data, std::size_t size, std::uint64_t memoryLimit) {
  Check(data, size, memoryLimit).run();
}

}  // namespace MemoryRegistry
