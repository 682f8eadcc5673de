#include "platform/registry/memory/archive/BinaryObjects.h"

#include <cstring>

#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;

[[noreturn]] void fail(const char* reason) {
  throw Refusal(std::string("is not a binary property list that can be parsed: ") + reason);
}

// Big-endian; more than eight bytes lose the upper ones.
std::uint64_t readNumber(const unsigned char* at, std::size_t size) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i)
    value = value << 8U | at[i];
  return value;
}

bool isHighSurrogate(std::uint64_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(std::uint64_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool isUTF16(const unsigned char* text, std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; i += 2) {
    const std::uint64_t unit = readNumber(text + i, 2);
    if (unit == 0 || isLowSurrogate(unit)) return false;
    if (!isHighSurrogate(unit)) continue;
    i += 2;
    if (i >= bytes || !isLowSurrogate(readNumber(text + i, 2))) return false;
  }
  return true;
}

}  // namespace

BinaryObjects::BinaryObjects(const char* data, std::size_t size)
    : _begin(reinterpret_cast<const Byte*>(data)) {
  if (size < headerSize + trailerSize || std::memcmp(data, "bplist00", headerSize) != 0) {
    fail("its begin or end is missing");
  }
  const Byte* const trailer = _begin + size - trailerSize;
  _offsetSize = trailer[6];
  _referenceSize = trailer[7];
  const std::uint64_t count = readNumber(trailer + 8, 8);
  const std::uint64_t top = readNumber(trailer + 16, 8);
  const std::uint64_t table = readNumber(trailer + 24, 8);
  const std::size_t room = size - trailerSize;
  if (_offsetSize < 1 || _offsetSize > 8 || _referenceSize < 1 || _referenceSize > 8) {
    fail("it has numbers of an impossible size");
  }
  if (table < headerSize || table > room || count > (room - table) / _offsetSize) {
    fail("its table of objects is not within the file");
  }
  // Each object takes a byte at least.
  if (count == 0 || count > table - headerSize || top >= count) {
    fail("it has an impossible number of objects");
  }
  _table = _begin + table;
  _count = static_cast<std::size_t>(count);
  _top = static_cast<std::size_t>(top);
}

void BinaryObjects::need(const Byte* at, std::uint64_t bytes) const {
  if (bytes > static_cast<std::uint64_t>(_table - at)) fail("an object is not within the file");
}

BinaryObject BinaryObjects::object(std::size_t number) const {
  const std::uint64_t offset = readNumber(_table + number * _offsetSize, _offsetSize);
  if (offset < headerSize || offset >= static_cast<std::uint64_t>(_table - _begin)) {
    fail("an object is not within the file");
  }
  const Byte* const at = _begin + offset;
  const unsigned high = *at >> 4U;
  const unsigned low = *at & 0x0FU;
  switch (high) {
    case 0x0:
      if (low != 8 && low != 9) fail("an object of unknown kind");
      return {};
    case 0x1:
      checkInteger(low, at + 1);
      return {};
    case 0x2:
      if (low != 2 && low != 3) fail("an object of unknown kind");
      need(at + 1, std::uint64_t{1} << low);
      return {};
    case 0x3:
      if (low != 3) fail("an object of unknown kind");
      need(at + 1, 8);
      return {};
    case 0x8:
      if (low > 7) fail("an object of unknown kind");
      need(at + 1, low + 1);
      return {};
    case 0x4:
      return bytes(BinaryObject::Kind::Scalar, low, at + 1);
    case 0x5:
      return bytes(BinaryObject::Kind::ByteString, low, at + 1);
    case 0x6:
      return bytes(BinaryObject::Kind::WideString, low, at + 1);
    // A set, which ioreg prints as an array, and libplist reads as one.
    case 0xA:
    case 0xC:
      return container(BinaryObject::Kind::Array, low, at + 1);
    case 0xD:
      return container(BinaryObject::Kind::Dictionary, low, at + 1);
    default:
      fail("an object of unknown kind");
  }
}

// libplist takes the lower 64 bits of an integer of 128; only those that fit are let through.
void BinaryObjects::checkInteger(unsigned low, const Byte* at) const {
  if (low > 4) fail("an object of unknown kind");
  need(at, std::uint64_t{1} << low);
  if (low < 4) return;
  const std::uint64_t upper = readNumber(at, 8);
  const bool negative = (at[8] & 0x80U) != 0;
  if (upper != 0 && !(upper == ~std::uint64_t{0} && negative)) {
    fail("an integer of more than 64 bits");
  }
}

// A length that doesn't fit beside the kind follows as an integer.
std::size_t BinaryObjects::length(unsigned low, const Byte*& at) const {
  if (low != 0x0F) return low;
  need(at, 1);
  const unsigned power = *at & 0x0FU;
  if (*at >> 4U != 0x1 || power > 3) fail("an object has an impossible length");
  const std::size_t size = std::size_t{1} << power;
  need(at + 1, size);
  const std::uint64_t value = readNumber(at + 1, size);
  at += 1 + size;
  // Checked against what is left, here too, so that no product of it overflows.
  need(at, value);
  return static_cast<std::size_t>(value);
}

BinaryObject BinaryObjects::bytes(BinaryObject::Kind kind, unsigned low, const Byte* at) const {
  BinaryObject result;
  result.kind = kind;
  result.bytes = length(low, at) * (kind == BinaryObject::Kind::WideString ? 2 : 1);
  need(at, result.bytes);
  result.first = at;
  return result;
}

BinaryObject BinaryObjects::container(BinaryObject::Kind kind, unsigned low, const Byte* at) const {
  BinaryObject result;
  result.kind = kind;
  result.references = length(low, at) * (kind == BinaryObject::Kind::Dictionary ? 2 : 1);
  need(at, std::uint64_t{result.references} * _referenceSize);
  result.first = at;
  return result;
}

std::size_t BinaryObjects::reference(const BinaryObject& object, std::size_t n) const {
  const std::uint64_t number = readNumber(object.first + n * _referenceSize, _referenceSize);
  if (number >= _count) fail("a reference leads nowhere");
  return static_cast<std::size_t>(number);
}

void BinaryObjects::checkString(const BinaryObject& string) const {
  const auto* const at = reinterpret_cast<const char*>(string.first);
  const bool good = string.kind == BinaryObject::Kind::WideString
                        ? isUTF16(string.first, string.bytes)
                        : isUTF8(at, string.bytes) && std::memchr(at, 0, string.bytes) == nullptr;
  if (!good) fail("a text that is none");
}

}  // namespace MemoryRegistry
