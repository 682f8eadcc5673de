#include "platform/registry/memory/archive/PropertyReader.h"

#include <string>
#include <utility>

#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/ValueRules.h"

namespace MemoryRegistry {
namespace {

// Recursive; bounded by deepestValue.
PropertyValue readValue(plist_t node, std::size_t depth);

// A dictionary in the making.
class DictionaryReader {
 public:
  explicit DictionaryReader(std::size_t size) { _dictionary.reserve(size); }

  template <class Text>
  void add(Text&& key, plist_t value, std::size_t depth) {
    _dictionary.emplace_back(std::forward<Text>(key), readValue(value, depth));
    const std::size_t size = _dictionary.size();
    _sorted = _sorted && (size < 2 || _dictionary[size - 2].first < _dictionary[size - 1].first);
  }

  Dictionary take() {
    if (!_sorted) keepLastOfEachKey(_dictionary);
    return std::move(_dictionary);
  }

 private:
  Dictionary _dictionary;
  bool _sorted = true;
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
    array.push_back(readValue(element, depth + 1));
  }
  return array;
}

PropertyValue readBoolean(plist_t node) {
  std::uint8_t value = 0;
  plist_get_bool_val(node, &value);
  return value != 0;
}

PropertyValue readNumber(plist_t node) {
  std::uint64_t bits = 0;
  plist_get_uint_val(node, &bits);
  return numberOfUnknownWidth(bits);
}

PropertyValue readReal(plist_t node) {
  double value = 0;
  plist_get_real_val(node, &value);
  return value;
}

PropertyValue readText(plist_t node) {
  std::uint64_t size = 0;
  const char* text = plist_get_string_ptr(node, &size);
  return std::string(text, static_cast<std::size_t>(size));
}

PropertyValue readData(plist_t node) {
  std::uint64_t size = 0;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(plist_get_data_ptr(node, &size));
  // libplist has no pointer for data without bytes.
  return bytes == nullptr ? Data() : Data(bytes, bytes + size);
}

PropertyValue readValue(plist_t node, std::size_t depth) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN:
      return readBoolean(node);
    case PLIST_UINT:
      return readNumber(node);
    case PLIST_REAL:
      return readReal(node);
    case PLIST_STRING:
      return readText(node);
    case PLIST_DATA:
      return readData(node);
    case PLIST_ARRAY:
      checkValueDepth(depth);
      return readArray(node, depth);
    case PLIST_DICT:
      checkValueDepth(depth);
      return readDictionary(node, depth);
    default:
      return Opaque{};
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
