#include <algorithm>
#include <utility>
#include <variant>

#include "platform/registry/memory/CFNumbers.h"
#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/Entry.h"

namespace MemoryRegistry {

namespace {

Owned<const void> untyped(const void* value) { return Owned<const void>(value); }

// The dictionary has room for the pair already.
void append(__CFDictionary& dictionary, const std::string& key, const PropertyValue& value) {
  auto name = makePropertyString(key);
  auto copy = makeProperty(value);
  const std::size_t hash = hashOf(name.get());
  dictionary.pairs.push_back({hash, name.release(), copy.release()});
}

void sortPairs(__CFDictionary& dictionary) {
  std::stable_sort(dictionary.pairs.begin(), dictionary.pairs.end(),
                   [](const auto& a, const auto& b) { return a.hash < b.hash; });
}

// What a property becomes on the user's side, one operator for each kind.
struct Copier {
  Owned<const void> operator()(bool value) const { return untyped(booleanValue(value)); }

  // Up to 32 bits a signed 32-bit number, so that 0x80000000 and above come out negative.
  Owned<const void> operator()(const Number& number) const {
    const std::uint64_t bits = valueOf(number);
    if (number.width > 32) {
      return untyped(makeInteger(static_cast<std::int64_t>(bits), kCFNumberSInt64Type).release());
    }
    const auto narrow = static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
    return untyped(makeInteger(narrow, kCFNumberSInt32Type).release());
  }
  Owned<const void> operator()(double value) const { return untyped(makeReal(value).release()); }
  Owned<const void> operator()(const std::string& value) const {
    return untyped(makePropertyString(value).release());
  }
  Owned<const void> operator()(const Data& bytes) const {
    auto data = make<__CFData>();
    data->bytes = bytes;
    return untyped(data.release());
  }
  Owned<const void> operator()(const Array& values) const {
    auto array = make<__CFArray>();
    array->values.reserve(values.size());
    for (const PropertyValue& value : values) {
      array->values.push_back(makeProperty(value).release());
    }
    return untyped(array.release());
  }
  Owned<const void> operator()(const Dictionary& pairs) const {
    auto dictionary = make<__CFDictionary>();
    dictionary->pairs.reserve(pairs.size());
    // From the back, so that of a key given twice the last one is met first.
    for (auto pair = pairs.rbegin(); pair != pairs.rend(); ++pair)
      append(*dictionary, pair->first, pair->second);
    sortPairs(*dictionary);
    return untyped(dictionary.release());
  }
  Owned<const void> operator()(const Opaque&) const { return untyped(make<CFOpaque>().release()); }
};

}  // namespace

CFTypeRef booleanValue(bool value) {
  static const auto constant = [](bool of) {
    auto* boolean = new __CFBoolean;  // for ever
    boolean->header.constant = true;
    boolean->value = of;
    return boolean;
  };
  static const __CFBoolean* const no = constant(false);
  static const __CFBoolean* const yes = constant(true);
  return value ? yes : no;
}

Owned<const void> makeProperty(const PropertyValue& value) {
  return std::visit(Copier(), value.variant());
}

Owned<__CFDictionary> makeProperties(const std::vector<Property>& properties) {
  auto dictionary = make<__CFDictionary>();
  dictionary->pairs.reserve(properties.size());
  for (const Property& property : properties)
    append(*dictionary, property.key->text, property.value);
  sortPairs(*dictionary);
  return dictionary;
}

}  // namespace MemoryRegistry
