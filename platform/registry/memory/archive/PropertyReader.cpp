#include "platform/registry/memory/archive/PropertyReader.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/EntryPrint.h"
#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

enum class Keys { All, NotSynthetic };

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

Dictionary readDictionary(plist_t node, Keys keys, std::size_t depth) {
  Dictionary dictionary;
  dictionary.reserve(plist_dict_get_size(node));
  bool sorted = true;
  DictionaryItems items(node);
  for (plist_t item = items.next(); item != nullptr; item = items.next()) {
    const PropertyListText text = keyOf(item);
    const std::string_view key(text.get());
    if (keys == Keys::NotSynthetic && isSyntheticKey(key)) continue;
    sorted = sorted && (dictionary.empty() || dictionary.back().first < key);
    dictionary.emplace_back(key, readValue(item, depth + 1));
  }
  if (!sorted) keepLastOfEachKey(dictionary);
  return dictionary;
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
  const char* bytes = plist_get_data_ptr(node, &size);
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
      return readDictionary(node, Keys::All, depth);
    default:
      return Opaque{};
  }
}

}  // namespace

Dictionary readProperties(plist_t entry) { return readDictionary(entry, Keys::NotSynthetic, 0); }

}  // namespace MemoryRegistry
