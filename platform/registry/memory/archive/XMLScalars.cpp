#include "platform/registry/memory/archive/XMLScalars.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace MemoryRegistry {
namespace {

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

bool isHexadecimal(std::string_view text) {
  return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

bool parseDigits(std::string_view digits, int base, std::uint64_t& value) {
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  return error == std::errc() && end == digits.data() + digits.size();
}

// What a character adds to the sum over a text: one for a digit, nothing for a blank, and more than
// any text has digits for what base64 doesn't have.
constexpr std::uint64_t noBase64 = std::uint64_t{1} << 32U;

constexpr std::array<std::uint64_t, 256> base64Table() {
  std::array<std::uint64_t, 256> table{};
  for (std::uint64_t& value : table)
    value = noBase64;
  for (const char c : {' ', '\t', '\n', '\r'})
    table[static_cast<std::uint8_t>(c)] = 0;
  for (std::size_t c = 'A'; c <= 'Z'; ++c)
    table[c] = 1;
  for (std::size_t c = 'a'; c <= 'z'; ++c)
    table[c] = 1;
  for (std::size_t c = '0'; c <= '9'; ++c)
    table[c] = 1;
  table['+'] = 1;
  table['/'] = 1;
  return table;
}

constexpr std::array<std::uint64_t, 256> base64 = base64Table();

// Takes the padding off the end, and says how much there was.
std::size_t takePadding(std::string_view& text) {
  std::size_t count = 0;
  while (!text.empty() && (text.back() == '=' || isBlank(text.back()))) {
    if (text.back() == '=') ++count;
    text.remove_suffix(1);
  }
  return count;
}

// What nearly every integer looks like: it surely fits.
bool isPlainInteger(std::string_view text) {
  constexpr std::size_t surelyFits = 19;
  if (text.empty() || text.size() > surelyFits || (text[0] == '0' && text.size() > 1)) return false;
  for (const char c : text) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

}  // namespace

bool isInteger(std::string_view text) {
  if (isPlainInteger(text)) return true;
  text = withoutBlanks(text);
  bool negative = false;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  std::uint64_t value = 0;
  if (isHexadecimal(text)) {
    if (!parseDigits(text.substr(2), 16, value)) return false;
  } else {
    if (text.size() > 1 && text[0] == '0') return false;
    if (!parseDigits(text, 10, value)) return false;
  }
  return !negative || value <= std::uint64_t{1} << 63U;
}

bool isReal(std::string_view text) {
  const std::string number(withoutBlanks(text));
  if (number.empty() || number.size() > 64) return false;
  char* end = nullptr;
  std::strtod(number.c_str(), &end);
  return end == number.c_str() + number.size();
}

bool isBase64(std::string_view text) {
  const std::size_t padding = takePadding(text);
  const auto valueAt = [&text](std::size_t i) {
    return base64[static_cast<std::uint8_t>(text[i])];
  };
  std::uint64_t digits = 0;
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    digits += valueAt(i) + valueAt(i + 1) + valueAt(i + 2) + valueAt(i + 3) + valueAt(i + 4) +
              valueAt(i + 5) + valueAt(i + 6) + valueAt(i + 7);
  }
  for (; i < text.size(); ++i)
    digits += valueAt(i);
  return digits < noBase64 && padding <= 2 && (digits + padding) % 4 == 0 &&
         (digits != 0 || padding == 0);
}

bool isReference(std::string_view text) {
  for (const char* name : {"amp", "lt", "gt", "quot", "apos"}) {
    if (text == name) return true;
  }
  if (text.size() < 2 || text[0] != '#') return false;
  const bool hexadecimal = text[1] == 'x';
  std::uint64_t code = 0;
  if (!parseDigits(text.substr(hexadecimal ? 2 : 1), hexadecimal ? 16 : 10, code)) return false;
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code != 0 && code <= 0x10FFFF && !surrogate;
}

}  // namespace MemoryRegistry
