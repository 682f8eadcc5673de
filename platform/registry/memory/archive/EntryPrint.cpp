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

struct KeyText {
  const char* text;
  std::size_t size;
};

constexpr KeyText keyText(std::string_view key) { return {key.data(), key.size()}; }

constexpr std::array<KeyText, SyntheticKeyCount> syntheticKeys = {
    keyText("IORegistryEntryName"), keyText("IORegistryEntryLocation"),
    keyText("IORegistryEntryID"),   keyText("IORegistryEntryChildren"),
    keyText("IOObjectClass"),       keyText("IOObjectInheritance"),
    keyText("IOObjectRetainCount"), keyText("IOServiceState"),
    keyText("IOServiceBusyState"),  keyText("IOServiceBusyTime"),
};

using SyntheticItems = std::array<plist_t, SyntheticKeyCount>;

bool startsWith(plist_t key, std::string_view prefix) {
  return plist_key_val_compare_with_size(key, prefix.data(), prefix.size()) == 0;
}

// The last item of each key: a key that is there twice means its last value, as for libplist when
// it reads XML.
SyntheticItems findSyntheticItems(plist_t dictionary) {
  SyntheticItems found{};
  DictionaryItems items(dictionary);
  for (plist_t item = items.next(); item != nullptr; item = items.next()) {
    const plist_t key = plist_dict_item_get_key(item);
    if (!startsWith(key, "IO")) continue;
    if (!startsWith(key, "IORegistryEntry") && !startsWith(key, "IOObject") &&
        !startsWith(key, "IOService")) {
      continue;
    }
    for (std::size_t i = 0; i < SyntheticKeyCount; ++i) {
      if (plist_key_val_compare(key, syntheticKeys[i].text) == 0) found[i] = item;
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

void checkInheritance(plist_t item, EntryID id) {
  if (item == nullptr) return;
  const std::string reason =
      entryText(id) + " has an IOObjectInheritance that is no array of strings";
  if (!PLIST_IS_ARRAY(item)) throw Refusal(reason);
  ArrayElements elements(item);
  for (plist_t element = elements.next(); element != nullptr; element = elements.next()) {
    if (!PLIST_IS_STRING(element)) throw Refusal(reason);
  }
}

void checkChildren(plist_t item, EntryID id) {
  if (item != nullptr && !PLIST_IS_ARRAY(item)) {
    throw Refusal(entryText(id) + " has an IORegistryEntryChildren that is no array");
  }
}

}  // namespace

std::string entryText(EntryID id) { return "entry " + hexadecimal(id); }

bool isSyntheticKey(std::string_view key) {
  if (key.size() < 2 || key[0] != 'I' || key[1] != 'O') return false;
  return std::any_of(syntheticKeys.begin(), syntheticKeys.end(), [key](const KeyText& synthetic) {
    return key == std::string_view(synthetic.text, synthetic.size);
  });
}

EntryPrint readPrint(plist_t dictionary, EntryID parent) {
  if (!PLIST_IS_DICT(dictionary)) {
    throw Refusal(placeText(parent) + " is no dictionary");
  }
  const SyntheticItems items = findSyntheticItems(dictionary);
  EntryPrint print;
  print.id = readID(items[ID], parent);
  print.className = readString(items[Class], print.id, "IOObjectClass");
  if (print.className.empty()) throw Refusal(entryText(print.id) + " has no IOObjectClass");
  const std::string_view name = readString(items[Name], print.id, "IORegistryEntryName");
  print.name = items[Name] != nullptr ? name : print.className;
  print.location = readString(items[Location], print.id, "IORegistryEntryLocation");
  print.state = readState(items[State], print.id);
  checkInheritance(items[Inheritance], print.id);
  print.inheritance = items[Inheritance];
  checkChildren(items[Children], print.id);
  print.children = items[Children];
  return print;
}

std::vector<std::string> readInheritance(const EntryPrint& print) {
  std::vector<std::string> classes;
  if (print.inheritance == nullptr) return classes;
  classes.reserve(plist_array_get_size(print.inheritance) + std::size_t{1});
  ArrayElements elements(print.inheritance);
  for (plist_t element = elements.next(); element != nullptr; element = elements.next()) {
    std::uint64_t size = 0;
    const char* text = plist_get_string_ptr(element, &size);
    classes.emplace_back(text, static_cast<std::size_t>(size));
  }
  // An entry is of its own class whatever its chain ends in. An empty chain is as good as none.
  if (!classes.empty() && classes.back() != print.className) {
    classes.emplace_back(print.className);
  }
  return classes;
}

}  // namespace MemoryRegistry
