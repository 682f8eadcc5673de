#include "platform/registry/memory/archive/PropertyReader.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

// Recursive; bounded by deepestValue.
PropertyValue readValue(plist_t node, std::size_t depth);

// Of items with one key the last one counts. ioreg sorts keys, so this is for other writers.
void keepLastOfEachKey(Dictionary& dictionary) {
  std::vector<std::size_t> order(dictionary.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return dictionary[a].first < dictionary[b].first;
  });
  std::vector<bool> dropped(dictionary.size(), false);
  bool any = false;
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    if (dictionary[order[i]].first != dictionary[order[i + 1]].first) continue;
    dropped[order[i]] = true;
    any = true;
  }
  if (!any) return;
  Dictionary kept;
  for (std::size_t i = 0; i < dictionary.size(); ++i) {
    if (!dropped[i]) kept.push_back(std::move(dictionary[i]));
  }
  dictionary = std::move(kept);
}

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
  // An archive keeps no widths. Most of the registry's small numbers have 32 bits.
  return Number{bits, bits <= 0x7FFFFFFFU ? 32U : 64U};
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

void checkDepth(std::size_t depth) {
  if (depth > deepestValue) {
    throw Refusal("has a property nested deeper than " + decimal(deepestValue) + " levels");
  }
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
      checkDepth(depth);
      return readArray(node, depth);
    case PLIST_DICT:
      checkDepth(depth);
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
