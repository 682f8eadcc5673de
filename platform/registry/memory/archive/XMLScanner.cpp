#include "platform/registry/memory/archive/XMLScanner.h"

#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"
#include "platform/registry/memory/archive/XMLScalars.h"

namespace MemoryRegistry {
namespace {

bool isText(Tag tag) { return tag.element() == Element::String || tag.element() == Element::Key; }

}  // namespace

void XMLScanner::fail(const char* reason) const {
  const auto line = static_cast<std::size_t>(std::count(_begin, _at, '\n')) + 1;
  throw Refusal("is not a property list that can be parsed: line " + decimal(line) + ": " + reason);
}

void XMLScanner::failAtEnd() {
  throw Refusal("is not a complete property list: it ends in the middle");
}

bool XMLScanner::startsWith(std::string_view text) const {
  return left() >= text.size() && std::memcmp(_at, text.data(), text.size()) == 0;
}

// ---- Between elements ----

// Skips `<begin ... end>`; both marks must not overlap, since readers differ on that.
void XMLScanner::skipMarked(std::string_view begin, std::string_view end) {
  const std::string_view rest(_at, left());
  const std::size_t found = rest.find(end, begin.size());
  if (found == std::string_view::npos) failAtEnd();
  const std::size_t overlap = rest.find(end, 1);
  if (overlap < begin.size()) fail("a comment or instruction is cut short");
  _at += found + end.size();
}

void XMLScanner::skipBlanksAndComments() {
  while (_at != _end) {
    if (isBlank(*_at)) {
      ++_at;
    } else if (startsWith("<!--")) {
      skipMarked("<!--", "-->");
    } else if (startsWith("<?")) {
      skipMarked("<?", "?>");
    } else {
      return;
    }
  }
}

void XMLScanner::skipProlog() {
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
}

// ---- Tags ----

// Letter by letter.
Tag XMLScanner::readUnusualTag() {
  skipBlanksAndComments();
  if (_at == _end) failAtEnd();
  if (*_at != '<') fail("text stands between elements");
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

const ElementName* XMLScanner::readName() {
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

void XMLScanner::skipAttributes() {
  const char* const end = find(_at, '>');
  if (std::find(_at, end, '<') != end || end[-1] == '/') fail("a list without content");
  _at = end;
}

// ---- Text ----

void XMLScanner::readUnusualEndTag(Tag begin) {
  if (readUnusualTag().name != begin.name) fail("an end tag without its begin");
}

void XMLScanner::skipWithinText(Tag tag) {
  if (isText(tag) && startsWith("<!--")) return skipMarked("<!--", "-->");
  if (isText(tag) && startsWith("<![CDATA[")) return skipMarked("<![CDATA[", "]]>");
  if (left() < sizeof("<![CDATA[") - 1) failAtEnd();
  fail("a tag within text");
}

// Those from `piece` to here, each checked.
std::uint64_t XMLScanner::countReferences(const char* piece, Tag tag) {
  if (_reference < piece) _reference = referenceFrom(piece);
  std::uint64_t count = 0;
  for (; _reference < _at; _reference = referenceFrom(_reference + 1)) {
    if (!isText(tag) || !isReference(referenceName())) fail("a reference that cannot be read");
    ++count;
  }
  return count;
}

std::string_view XMLScanner::referenceName() const {
  constexpr std::size_t longest = 32;
  const std::string_view rest(_reference + 1, static_cast<std::size_t>(_at - _reference) - 1);
  const std::size_t end = rest.substr(0, longest).find(';');
  return rest.substr(0, end == std::string_view::npos ? 0 : end);
}

// The next "&" of the whole list, so that the many texts without one cost nothing.
const char* XMLScanner::referenceFrom(const char* from) const {
  const auto* found =
      static_cast<const char*>(std::memchr(from, '&', static_cast<std::size_t>(_end - from)));
  return found == nullptr ? _end : found;
}

}  // namespace MemoryRegistry
