#pragma once

#include <cstddef>
#include <string_view>

namespace MemoryRegistry {

// Walks the lines of a text. Lines end in "\n"; or in "\r\n", where the first one does, and then a
// "\r" before the end of any line is no part of it.
class TextLines {
 public:
  explicit TextLines(std::string_view text);

  bool atEnd() const { return _begin == _text.size(); }
  // The line at hand without its end, and where it begins and ends in the text.
  std::string_view line() const { return _text.substr(_begin, _end - _begin); }
  std::size_t begin() const { return _begin; }
  std::size_t end() const { return _end; }
  void advance();

  bool hasCarriageReturns() const { return _carriageReturns; }
  // The number, counted from 1, of the line at a place in the text.
  std::size_t number(std::size_t place) const;

 private:
  void findEnd();

  std::string_view _text;
  bool _carriageReturns;
  std::size_t _begin = 0;
  std::size_t _end = 0;
  std::size_t _next = 0;
};

}  // namespace MemoryRegistry
