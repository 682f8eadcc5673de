#include "platform/registry/memory/archive/EntryPrint.h"

#include <algorithm>
#include <array>

#include "platform/registry/memory/archive/PropertyList.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

enum SyntheticKey : std::size_t {
  Name,
  Location,
  ID,
  Children,
  Class,
  Inheritance,
  RetainCount,
  State,
  BusyState,
  BusyTime,
  SyntheticKeyCount
};

// The keys that ioreg adds: they are no properties.
constexpr std::array<std::string_view, SyntheticKeyCount> syntheticKeys = {
    "IORegistryEntryName",     "IORegistryEntryLocation", "IORegistryEntryID",
    "IORegistryEntryChildren", "IOObjectClass",           "IOObjectInheritance",
    "IOObjectRetainCount",     "IOServiceState",          "IOServiceBusyState",
    "IOServiceBusyTime",
};

using SyntheticItems = std::array<plist_t, SyntheticKeyCount>;

// SyntheticKeyCount for a property's key.
std::size_t syntheticKey(std::string_view key) {
  if (key.size() < 2 || key[0] != 'I' || key[1] != 'O') return SyntheticKeyCount;
  return static_cast<std::size_t>(std::find(syntheticKeys.begin(), syntheticKeys.end(), key) -
                                  syntheticKeys.begin());
}

// Of synthetic items with one key the last counts, as for libplist when it reads XML.
SyntheticItems sortItems(plist_t dictionary, std::vector<PrintedProperty>& properties) {
  SyntheticItems found{};
  properties.reserve(plist_dict_get_size(dictionary));
  DictionaryItems items(dictionary);
  for (auto item = items.next(); item.value != nullptr; item = items.next()) {
    const std::string_view key(item.key.get());
    const std::size_t synthetic = syntheticKey(key);
    if (synthetic == SyntheticKeyCount) {
      properties.push_back({std::string(key), item.value});
    } else {
      found[synthetic] = item.value;
    }
  }
  return found;
}

std::string placeText(EntryID parent) {
  return parent == 0 ? "the root" : "a child of " + entryText(parent);
}

EntryID readID(plist_t item, EntryID parent) {
  if (item == nullptr) throw Refusal(placeText(parent) + " has no IORegistryEntryID");
  if (!PLIST_IS_UINT(item)) {
    throw Refusal(placeText(parent) + " has an IORegistryEntryID that is no integer");
  }
  EntryID id = 0;
  plist_get_uint_val(item, &id);
  if (id == 0) throw Refusal(placeText(parent) + " has the IORegistryEntryID 0");
  return id;
}

std::string_view readString(plist_t item, EntryID id, const char* key) {
  if (item == nullptr) return {};
  if (!PLIST_IS_STRING(item)) {
    throw Refusal(entryText(id) + " has an " + key + " that is no string");
  }
  std::uint64_t size = 0;
  const char* text = plist_get_string_ptr(item, &size);
  return {text, static_cast<std::size_t>(size)};
}

std::optional<std::uint32_t> readState(plist_t item, EntryID id) {
  if (item == nullptr) return std::nullopt;
  if (!PLIST_IS_UINT(item)) {
    throw Refusal(entryText(id) + " has an IOServiceState that is no integer");
  }
  std::uint64_t bits = 0;
  plist_get_uint_val(item, &bits);
  // A state has 32 bits; only the lowest few mean something.
  return static_cast<std::uint32_t>(bits & 0xFFFFFFFFU);
}

std::vector<std::string> readInheritance(plist_t item, EntryID id) {
  constexpr const char* reason = " has an IOObjectInheritance that is no array of strings";
  std::vector<std::string> classes;
  if (item == nullptr) return classes;
  if (!PLIST_IS_ARRAY(item)) throw Refusal(entryText(id) + reason);
  classes.reserve(plist_array_get_size(item) + std::size_t{1});
  ArrayElements elements(item);
  for (plist_t element = elements.next(); element != nullptr; element = elements.next()) {
    if (!PLIST_IS_STRING(element)) throw Refusal(entryText(id) + reason);
    std::uint64_t size = 0;
    const char* text = plist_get_string_ptr(element, &size);
    classes.emplace_back(text, static_cast<std::size_t>(size));
  }
  return classes;
}

void checkChildren(plist_t item, EntryID id) {
  if (item != nullptr && !PLIST_IS_ARRAY(item)) {
    throw Refusal(entryText(id) + " has an IORegistryEntryChildren that is no array");
  }
}

}  // namespace

bool isSyntheticKey(std::string_view key) { return syntheticKey(key) != SyntheticKeyCount; }

std::string entryText(EntryID id) { return "entry " + hexadecimal(id); }

EntryPrint readPrint(plist_t dictionary, EntryID parent) {
  if (!PLIST_IS_DICT(dictionary)) {
    throw Refusal(placeText(parent) + " is no dictionary");
  }
  EntryPrint print;
  const SyntheticItems items = sortItems(dictionary, print.properties);
  print.id = readID(items[ID], parent);
  print.className = readString(items[Class], print.id, "IOObjectClass");
  if (print.className.empty()) throw Refusal(entryText(print.id) + " has no IOObjectClass");
  const std::string_view name = readString(items[Name], print.id, "IORegistryEntryName");
  print.name = items[Name] != nullptr ? name : print.className;
  print.location = readString(items[Location], print.id, "IORegistryEntryLocation");
  print.state = readState(items[State], print.id);
  print.classes = readInheritance(items[Inheritance], print.id);
  // An entry is of its own class whatever its chain ends in. An empty chain is as good as none.
  if (!print.classes.empty() && print.classes.back() != print.className) {
    print.classes.emplace_back(print.className);
  }
  checkChildren(items[Children], print.id);
  print.children = items[Children];
  return print;
}

}  // namespace MemoryRegistry
