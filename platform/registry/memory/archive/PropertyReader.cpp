#include "platform/registry/memory/archive/PropertyReader.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/ValueRules.h"

namespace MemoryRegistry {
namespace {

bool readBoolean(plist_t node) {
  std::uint8_t value = 0;
  plist_get_bool_val(node, &value);
  return value != 0;
}

Number readNumber(plist_t node) {
  std::uint64_t bits = 0;
  plist_get_uint_val(node, &bits);
  return numberOfUnknownWidth(bits);
}

double readReal(plist_t node) {
  double value = 0;
  plist_get_real_val(node, &value);
  return value;
}

std::string readText(plist_t node) {
  std::uint64_t size = 0;
  const char* text = plist_get_string_ptr(node, &size);
  return {text, static_cast<std::size_t>(size)};
}

Data readData(plist_t node) {
  std::uint64_t size = 0;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(plist_get_data_ptr(node, &size));
  // libplist has no pointer for data without bytes.
  return bytes == nullptr ? Data() : Data(bytes, bytes + size);
}

// Hands the value to `place`, which makes it where it belongs, in the type that it has. Recursive;
// bounded by deepestValue.
template <class Place>
void readValue(plist_t node, std::size_t depth, const Place& place);

// A dictionary in the making.
class DictionaryReader {
 public:
  explicit DictionaryReader(std::size_t size) { _dictionary.reserve(size); }

  template <class Text>
  void add(Text&& key, plist_t node, std::size_t depth) {
    readValue(node, depth, [&](auto&& value) {
      _dictionary.emplace_back(std::forward<Text>(key), std::forward<decltype(value)>(value));
    });
  }

  Dictionary take() {
    // Most are printed in order, each key once.
    const auto ascend = [](const auto& one, const auto& next) { return one.first < next.first; };
    const auto end = _dictionary.end();
    if (std::adjacent_find(_dictionary.begin(), end, std::not_fn(ascend)) != end)
      keepLastOfEachKey(_dictionary);
    return std::move(_dictionary);
  }

 private:
  Dictionary _dictionary;
};

Dictionary readDictionary(plist_t node, std::size_t depth) {
  DictionaryReader reader(plist_dict_get_size(node));
  DictionaryItems items(node);
  for (auto item = items.next(); item.value != nullptr; item = items.next()) {
    reader.add(item.key.get(), item.value, depth + 1);
  }
  return reader.take();
}

Array readArray(plist_t node, std::size_t depth) {
  Array array;
  array.reserve(plist_array_get_size(node));
  ArrayElements elements(node);
  for (plist_t element = elements.next(); element != nullptr; element = elements.next()) {
    readValue(element, depth + 1,
              [&](auto&& value) { array.emplace_back(std::forward<decltype(value)>(value)); });
  }
  return array;
}

template <class Place>
void readValue(plist_t node, std::size_t depth, const Place& place) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
      return place(readBoolean(node));
    case PLIST_UINT:
      return place(readNumber(node));
    case PLIST_REAL:
      return place(readReal(node));
    case PLIST_STRING:
      return place(readText(node));
    case PLIST_DATA:
      return place(readData(node));
    case PLIST_ARRAY:
      checkValueDepth(depth);
      return place(readArray(node, depth));
    case PLIST_DICT:
      checkValueDepth(depth);
      return place(readDictionary(node, depth));
    default:
      return place(Opaque{});
  }
}

}  // namespace

Dictionary readProperties(EntryPrint& print) {
  DictionaryReader reader(print.properties.size());
  for (PrintedProperty& property : print.properties)
    reader.add(std::move(property.key), property.value, 1);
  return reader.take();
}

}  // namespace MemoryRegistry
