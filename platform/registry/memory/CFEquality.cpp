#include <algorithm>
#include <functional>
#include <string_view>

#include "platform/registry/memory/CFNumbers.h"
#include "platform/registry/memory/CFObjects.h"

// CFEqual and CFHash, as the callbacks of dictionaries apply them.

namespace MemoryRegistry {

namespace {

template <class Value>
const Value& as(CFTypeRef value) {
  return *static_cast<const Value*>(value);
}

bool sameNumber(const __CFNumber& a, const __CFNumber& b) {
  if (a.isReal() && b.isReal()) return a.real == b.real;
  if (!a.isReal() && !b.isReal()) return a.integer == b.integer;
  const __CFNumber& real = a.isReal() ? a : b;
  const __CFNumber& whole = a.isReal() ? b : a;
  const Whole read = wholeOf(real);
  return read.exact && read.value == whole.integer;
}

bool samePairs(const __CFDictionary& a, const __CFDictionary& b) {
  return a.pairs.size() == b.pairs.size() &&
         std::all_of(a.pairs.begin(), a.pairs.end(), [&b](const auto& pair) {
           const auto* other = findPair(b, pair.key);
           return other != nullptr && equal(pair.value, other->value);
         });
}

std::size_t hashOf(const __CFNumber& number) {
  const Whole whole = wholeOf(number);
  return whole.exact ? std::hash<std::int64_t>()(whole.value) : std::hash<double>()(number.real);
}

}  // namespace

bool equal(CFTypeRef a, CFTypeRef b) {
  if (a == b) return true;
  if (typeOf(a) != typeOf(b)) return false;
  switch (typeOf(a)) {
    case CFType::StringType:
      return as<__CFString>(a).text == as<__CFString>(b).text;
    case CFType::NumberType:
      return sameNumber(as<__CFNumber>(a), as<__CFNumber>(b));
    case CFType::DataType:
      return as<__CFData>(a).bytes == as<__CFData>(b).bytes;
    case CFType::ArrayType: {
      const auto& values = as<__CFArray>(a).values;
      const auto& others = as<__CFArray>(b).values;
      return std::equal(values.begin(), values.end(), others.begin(), others.end(), equal);
    }
    case CFType::DictionaryType:
      return samePairs(as<__CFDictionary>(a), as<__CFDictionary>(b));
    case CFType::BooleanType:
    case CFType::OpaqueType:
      break;
  }
  return false;
}

std::size_t hashOf(CFTypeRef value) {
  switch (typeOf(value)) {
    case CFType::StringType:
      return std::hash<std::string_view>()(as<__CFString>(value).text);
    case CFType::NumberType:
      return hashOf(as<__CFNumber>(value));
    case CFType::DataType:
      return as<__CFData>(value).bytes.size();
    case CFType::ArrayType:
      return as<__CFArray>(value).values.size();
    case CFType::DictionaryType:
      return as<__CFDictionary>(value).pairs.size();
    case CFType::BooleanType:
    case CFType::OpaqueType:
      break;
  }
  return std::hash<CFTypeRef>()(value);
}

}  // namespace MemoryRegistry
