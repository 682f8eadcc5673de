#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace Program {

// Replaces texts by others of the same length, wherever they stand in a longer one; of those that
// stand at one place the longest.
class TextSearch {
 public:
  enum class Where {
    Words,     // whole words, and not what follows an "@", which is a location
    Anywhere,  // between any bytes
  };

  explicit TextSearch(Where where) : _where(where) {}

  void clear();
  void add(std::string_view text, std::string_view standIn);
  void replaceIn(std::string& text) const;

 private:
  struct Pair {
    std::string text;
    std::string standIn;
  };

  const Pair* findAt(std::string_view text, std::size_t place) const;
  bool standsAlone(std::string_view text, std::size_t place, std::size_t size) const;

  Where _where;
  std::array<std::vector<Pair>, 256> _byFirst;  // by first byte; the longest first
};

}  // namespace Program
