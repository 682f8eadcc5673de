#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace MemoryRegistry {

// An integer with the width, in bits, that its driver gave it: 8, 16, 32 or 64. Up to 32 bits it is
// read back as a signed 32-bit number, above as a signed 64-bit one. Thread and failure as for
// PropertyValue.
struct Number {
  std::uint64_t bits = 0;  // a negative number as its two's complement
  unsigned width = 32;     // 8, 16, 32 or 64
};

// Bits beyond the width count for nothing.
inline std::uint64_t valueOf(const Number& number) {
  return number.width >= 64 ? number.bits : number.bits & ((std::uint64_t{1} << number.width) - 1);
}

// A value of a type that can't be read as anything: a date, say.
struct Opaque {};

class PropertyValue;
// What the kinds of value that hold others, or bytes, are made of. The keys of a dictionary stand
// in the order in which they were set.
using Data = std::vector<std::uint8_t>;
using Array = std::vector<PropertyValue>;
using Dictionary = std::vector<std::pair<std::string, PropertyValue>>;

// What an entry stores under a property key. A plain value: copies are deep. Made from what it
// holds without a word, so that properties can be written down as lists.
//
// Ownership: holds everything beneath it; nothing is shared.
// Thread:    any; two threads that share one object look to that themselves.
// Failure:   nothing here fails but for lack of memory.
//
// \code
// using MemoryRegistry::Array;
// using MemoryRegistry::Dictionary;
//
// // What a mirror of two disks says of itself.
// Dictionary mirror() {
//   return {{"AppleRAID-SetName", "Projects"},
//           {"AppleRAID-LevelName", "Mirror"},
//           {"AppleRAID-Members", Array{"MEMBER-1", "MEMBER-2"}},
//           {"AppleRAID-ChunkCount", MemoryRegistry::number64(1907729)}};
// }
// \endcode
class PropertyValue {
 public:
  // One of the kinds of value that a registry can hold.
  using Variant = std::variant<bool, Number, double, std::string, Data, Array, Dictionary, Opaque>;

  // From what it holds. An int is a Number of 32 bits.
  PropertyValue(bool value) : _value(value) {}
  PropertyValue(Number value) : _value(value) {}
  PropertyValue(double value) : _value(value) {}
  PropertyValue(const char* value) : _value(std::string(value)) {}
  PropertyValue(std::string value) : _value(std::move(value)) {}
  PropertyValue(Data value) : _value(std::move(value)) {}
  PropertyValue(Array value) : _value(std::move(value)) {}
  PropertyValue(Dictionary value) : _value(std::move(value)) {}
  PropertyValue(Opaque value) : _value(value) {}
  PropertyValue(int value)
      : _value(Number{static_cast<std::uint64_t>(static_cast<std::uint32_t>(value)), 32}) {}

  // What it holds.
  const Variant& variant() const { return _value; }

 private:
  Variant _value;
};

// Numbers of the widths that drivers mostly use.
inline Number number32(std::uint32_t value) { return Number{value, 32}; }
inline Number number64(std::uint64_t value) { return Number{value, 64}; }

}  // namespace MemoryRegistry
