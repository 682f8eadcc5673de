#include "platform/registry/memory/PropertyMatching.h"

#include <algorithm>
#include <string_view>
#include <variant>

#include "platform/registry/memory/CFObjects.h"

namespace MemoryRegistry {

namespace {

std::string_view textOf(const Data& bytes) {
  return bytes.empty()
             ? std::string_view()
             : std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

bool sameText(std::string_view text, std::string_view data) {
  if (text == data) return true;
  return !data.empty() && data.back() == '\0' && text == data.substr(0, data.size() - 1);
}

// What a number looks like to the kernel: its bits, as wide as its own type, with zeros above.
std::uint64_t zeroExtended(const __CFNumber& number) {
  const auto bits = static_cast<std::uint64_t>(number.integer);
  return number.type == kCFNumberSInt32Type ? static_cast<std::uint32_t>(bits) : bits;
}

// One operator for each kind of property.
class Comparison {
 public:
  explicit Comparison(CFTypeRef sought) : _sought(sought) {}

  bool operator()(bool value) const { return _sought == booleanValue(value); }
  bool operator()(const Number& number) const {
    const auto* other = soughtAs<__CFNumber>(CFType::NumberType);
    return other != nullptr && !other->isReal() && zeroExtended(*other) == valueOf(number);
  }
  bool operator()(double value) const {
    const auto* other = soughtAs<__CFNumber>(CFType::NumberType);
    return other != nullptr && other->isReal() && other->real == value;
  }
  bool operator()(const std::string& text) const {
    if (const auto* other = soughtAs<__CFString>(CFType::StringType)) return other->text == text;
    const auto* data = soughtAs<__CFData>(CFType::DataType);
    return data != nullptr && sameText(text, textOf(data->bytes));
  }
  bool operator()(const Data& bytes) const {
    if (const auto* other = soughtAs<__CFData>(CFType::DataType)) return other->bytes == bytes;
    const auto* text = soughtAs<__CFString>(CFType::StringType);
    return text != nullptr && sameText(text->text, textOf(bytes));
  }
  bool operator()(const Array& values) const {
    const auto* other = soughtAs<__CFArray>(CFType::ArrayType);
    return other != nullptr && std::equal(values.begin(), values.end(), other->values.begin(),
                                          other->values.end(), matches);
  }
  bool operator()(const Dictionary& pairs) const {
    const auto* other = soughtAs<__CFDictionary>(CFType::DictionaryType);
    return other != nullptr && other->pairs.size() == pairs.size() &&
           std::all_of(other->pairs.begin(), other->pairs.end(),
                       [&pairs](const auto& sought) { return hasPair(pairs, sought); });
  }
  bool operator()(const Opaque&) const { return false; }

 private:
  template <class Value>
  const Value* soughtAs(CFType type) const {
    return typeOf(_sought) == type ? static_cast<const Value*>(_sought) : nullptr;
  }

  static bool hasPair(const Dictionary& pairs, const __CFDictionary::Pair& sought) {
    if (typeOf(sought.key) != CFType::StringType) return false;
    const std::string& key = static_cast<const __CFString*>(sought.key)->text;
    return std::any_of(pairs.begin(), pairs.end(), [&](const auto& pair) {
      return pair.first == key && matches(pair.second, sought.value);
    });
  }

  CFTypeRef _sought;
};

}  // namespace

bool matches(const PropertyValue& property, CFTypeRef sought) {
  return std::visit(Comparison(sought), property.variant());
}

}  // namespace MemoryRegistry
