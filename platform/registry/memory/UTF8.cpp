#include "platform/registry/memory/UTF8.h"

#include <array>
#include <cstring>

namespace MemoryRegistry {

namespace {

// The upper half of MacRoman in Unicode.
constexpr std::array<std::uint16_t, 128> macRoman = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3,
    0x00E5, 0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3,
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3,
    0x00A7, 0x2022, 0x00B6, 0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8,
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA,
    0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB,
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D,
    0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02,
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1, 0x00CB, 0x00C8, 0x00CD, 0x00CE,
    0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC,
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,
};

std::uint32_t byteAt(std::string_view text, std::size_t place) {
  return static_cast<unsigned char>(text[place]);
}

struct Form {
  std::size_t size;
  std::uint32_t lowest;  // no shorter form can say it
};

// Size 0: no character begins with this byte.
Form formOf(std::uint32_t first) {
  if (first < 0x80) return {1, 0};
  if (first < 0xC0) return {0, 0};
  if (first < 0xE0) return {2, 0x80};
  if (first < 0xF0) return {3, 0x800};
  if (first < 0xF8) return {4, 0x10000};
  return {0, 0};
}

bool isValidAt(std::string_view text, std::size_t place, const Form& form) {
  if (form.size == 0 || form.size > text.size() - place) return false;
  for (std::size_t next = 1; next < form.size; ++next) {
    if ((byteAt(text, place + next) & 0xC0U) != 0x80U) return false;
  }
  const std::uint32_t character = characterAt(text, place);
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  return character >= form.lowest && character <= 0x10FFFF && !surrogate;
}

// How many bytes at the front are ASCII, looked at and counted eight at a time.
std::size_t asciiWords(std::string_view text) {
  std::size_t place = 0;
  for (std::uint64_t word = 0; text.size() - place >= sizeof word; place += sizeof word) {
    std::memcpy(&word, text.data() + place, sizeof word);
    if ((word & 0x8080808080808080U) != 0) break;
  }
  return place;
}

void append(std::string& text, std::uint32_t character) {
  const auto put = [&text](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0U | character >> 6U);
    put(0x80U | (character & 0x3FU));
  } else {
    put(0xE0U | character >> 12U);
    put(0x80U | (character >> 6U & 0x3FU));
    put(0x80U | (character & 0x3FU));
  }
}

}  // namespace

long utf16Length(std::string_view text) {
  std::size_t place = asciiWords(text);
  auto length = static_cast<long>(place);
  while (place < text.size()) {
    const std::uint32_t first = byteAt(text, place);
    if (first < 0x80) {
      ++place;
      ++length;
      continue;
    }
    const Form form = formOf(first);
    if (!isValidAt(text, place, form)) return -1;
    place += form.size;
    length += form.size == 4 ? 2 : 1;
  }
  return length;
}

std::size_t characterSize(char first) { return formOf(static_cast<unsigned char>(first)).size; }

std::uint32_t characterAt(std::string_view text, std::size_t place) {
  const std::uint32_t first = byteAt(text, place);
  const std::size_t size = characterSize(text[place]);
  if (size == 1) return first;
  std::uint32_t character = first & (0xFFU >> (size + 1));
  for (std::size_t next = 1; next < size; ++next) {
    character = character << 6U | (byteAt(text, place + next) & 0x3FU);
  }
  return character;
}

std::string utf8OfMacRoman(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (std::size_t place = 0; place < bytes.size(); ++place) {
    const std::uint32_t byte = byteAt(bytes, place);
    append(text, byte < 0x80 ? byte : macRoman[byte - 0x80]);
  }
  return text;
}

}  // namespace MemoryRegistry
