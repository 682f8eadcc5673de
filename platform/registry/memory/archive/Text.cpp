#include "platform/registry/memory/archive/Text.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace MemoryRegistry {
namespace {

using Byte = unsigned char;

constexpr std::size_t blockSize = 64;

bool isASCIIBlock(const Byte* text) {
  std::uint64_t words[blockSize / sizeof(std::uint64_t)];
  std::memcpy(words, text, sizeof words);
  const std::uint64_t bits =
      (words[0] | words[1]) | (words[2] | words[3]) | (words[4] | words[5]) | (words[6] | words[7]);
  return (bits & 0x8080808080808080U) == 0;
}

bool isContinuation(Byte byte) { return (byte & 0xC0U) == 0x80U; }

// The length of the sequence at `text`, 0 when there is none. Overlong forms, surrogates and what
// lies beyond U+10FFFF are none.
std::size_t sequenceLength(const Byte* text, std::size_t left) {
  const Byte first = text[0];
  if (first < 0x80) return 1;
  if (first < 0xC2 || left < 2 || !isContinuation(text[1])) return 0;
  if (first < 0xE0) return 2;
  if (left < 3 || !isContinuation(text[2])) return 0;
  if (first < 0xF0) {
    const bool overlong = first == 0xE0 && text[1] < 0xA0;
    const bool surrogate = first == 0xED && text[1] > 0x9F;
    return overlong || surrogate ? 0 : 3;
  }
  if (first > 0xF4 || left < 4 || !isContinuation(text[3])) return 0;
  const bool overlong = first == 0xF0 && text[1] < 0x90;
  const bool beyond = first == 0xF4 && text[1] > 0x8F;
  return overlong || beyond ? 0 : 4;
}

}  // namespace

bool isUTF8(const char* text, std::size_t size) {
  const auto* bytes = reinterpret_cast<const Byte*>(text);
  std::size_t at = 0;
  while (at < size) {
    if (size - at >= blockSize && isASCIIBlock(bytes + at)) {
      at += blockSize;
      continue;
    }
    const std::size_t length = sequenceLength(bytes + at, size - at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string decimal(std::size_t value) { return std::to_string(value); }

std::string hexadecimal(unsigned long long value) {
  char text[19];
  std::snprintf(text, sizeof text, "0x%llx", value);
  return text;
}

}  // namespace MemoryRegistry
