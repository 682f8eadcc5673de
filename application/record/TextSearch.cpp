#include "application/record/TextSearch.h"

#include <algorithm>
#include <cctype>

namespace Program {
namespace {

unsigned char byteOf(char c) { return static_cast<unsigned char>(c); }

// Parts of characters beyond ASCII count as letters.
bool isOfWord(char c) { return std::isalnum(byteOf(c)) != 0 || byteOf(c) >= 0x80; }

}  // namespace

void TextSearch::clear() {
  for (auto& pairs : _byFirst)
    pairs.clear();
}

void TextSearch::add(std::string_view text, std::string_view standIn) {
  std::vector<Pair>& pairs = _byFirst[byteOf(text.front())];
  const auto place = std::find_if(pairs.begin(), pairs.end(), [text](const Pair& other) {
    return other.text.size() <= text.size();
  });
  pairs.insert(place, {std::string(text), std::string(standIn)});
}

void TextSearch::replaceIn(std::string& text) const {
  for (std::size_t place = 0; place < text.size();) {
    if (const Pair* found = findAt(text, place)) {
      text.replace(place, found->text.size(), found->standIn);
      place += found->standIn.size();
    } else {
      ++place;
    }
  }
}

const TextSearch::Pair* TextSearch::findAt(std::string_view text, std::size_t place) const {
  const std::vector<Pair>& pairs = _byFirst[byteOf(text[place])];
  const auto found = std::find_if(pairs.begin(), pairs.end(), [&](const Pair& pair) {
    return text.compare(place, pair.text.size(), pair.text) == 0 &&
           standsAlone(text, place, pair.text.size());
  });
  return found != pairs.end() ? &*found : nullptr;
}

bool TextSearch::standsAlone(std::string_view text, std::size_t place, std::size_t size) const {
  if (_where == Where::Anywhere) return true;
  const std::size_t end = place + size;
  if (place > 0 && text[place - 1] == '@') return false;
  if (place > 0 && isOfWord(text[place]) && isOfWord(text[place - 1])) return false;
  return end == text.size() || !isOfWord(text[end - 1]) || !isOfWord(text[end]);
}

}  // namespace Program
