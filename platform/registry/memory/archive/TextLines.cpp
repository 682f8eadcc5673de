#include "platform/registry/memory/archive/TextLines.h"

#include <algorithm>

namespace MemoryRegistry {

TextLines::TextLines(std::string_view text) : _text(text) {
  const std::size_t end = text.find('\n');
  _carriageReturns = end != std::string_view::npos && end != 0 && text[end - 1] == '\r';
  findEnd();
}

void TextLines::advance() {
  _begin = _next;
  findEnd();
}

std::size_t TextLines::number(std::size_t place) const {
  const std::string_view before = _text.substr(0, place);
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

void TextLines::findEnd() {
  _end = std::min(_text.find('\n', _begin), _text.size());
  _next = std::min(_end + 1, _text.size());
  if (_carriageReturns && _end > _begin && _text[_end - 1] == '\r') --_end;
}

}  // namespace MemoryRegistry
