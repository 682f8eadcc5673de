#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace MemoryRegistry {

// An integer with the width, in bits, that its driver gave it: 8, 16, 32 or 64. Up to 32 bits it is
// read back as a signed 32-bit number, above as a signed 64-bit one.
struct Number {
  std::uint64_t bits = 0;
  unsigned width = 32;
};

// Bits beyond the width count for nothing.
inline std::uint64_t valueOf(const Number& number) {
  return number.width >= 64 ? number.bits : number.bits & ((std::uint64_t{1} << number.width) - 1);
}

// A value of a type that can't be read as anything: a date, say.
struct Opaque {};

class PropertyValue;
using Data = std::vector<std::uint8_t>;
using Array = std::vector<PropertyValue>;
using Dictionary = std::vector<std::pair<std::string, PropertyValue>>;

// What an entry stores under a property key. A plain value: copies are deep. Made from what it
// holds without a word, so that properties can be written down as lists.
class PropertyValue {
 public:
  using Variant = std::variant<bool, Number, double, std::string, Data, Array, Dictionary, Opaque>;

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

  const Variant& variant() const { return _value; }

 private:
  Variant _value;
};

inline Number number32(std::uint32_t value) { return Number{value, 32}; }
inline Number number64(std::uint64_t value) { return Number{value, 64}; }

}  // namespace MemoryRegistry
