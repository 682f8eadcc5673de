#include "application/record/ArchiveWriter.h"

#include <plist/plist.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <new>

#include "application/record/PrintPlan.h"

namespace Program {
namespace {

using nlohmann::json;

struct FreeNode {
  void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, FreeNode>;

struct FreeText {
  void operator()(char* text) const { std::free(text); }
};

constexpr std::uint64_t SettledState = 0x1E;  // registered, matched, and both for the first time

Node nodeOf(const json& value);

void append(const Node& array, Node element) {
  plist_array_append_item(array.get(), element.release());
}

void put(const Node& dictionary, const std::string& key, Node value) {
  plist_dict_set_item(dictionary.get(), key.c_str(), value.release());
}

Node textNode(const std::string& text) { return Node(plist_new_string(text.c_str())); }

Node dataNode(const json::binary_t& bytes) {
  return Node(plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

Node arrayNode(const json& values) {
  Node array(plist_new_array());
  for (const json& value : values)
    append(array, nodeOf(value));
  return array;
}

Node dictionaryNode(const json& pairs) {
  Node dictionary(plist_new_dict());
  for (const auto& [key, value] : pairs.items())
    put(dictionary, key, nodeOf(value));
  return dictionary;
}

Node nodeOf(const json& value) {
  switch (value.type()) {
    case json::value_t::boolean:
      return Node(plist_new_bool(value.get<bool>() ? 1 : 0));
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
      return Node(plist_new_uint(static_cast<std::uint64_t>(value.get<std::int64_t>())));
    case json::value_t::number_float:
      return Node(plist_new_real(value.get<double>()));
    case json::value_t::string:
      return textNode(value.get_ref<const std::string&>());
    case json::value_t::binary:
      return dataNode(value.get_binary());
    case json::value_t::array:
      return arrayNode(value);
    case json::value_t::object:
      return dictionaryNode(value);
    default:
      // A date is what readers take for a value of no use, too.
      return Node(plist_new_date(0, 0));
  }
}

class ArchiveWriter {
 public:
  explicit ArchiveWriter(const RegistryLook& look) : _look(look) {}

  // Recursive, as libplist is; entries are nested as deep as the registry lets them be.
  Node dictionaryOf(const EntryPrint& print) const {
    const RecordedEntry& entry = _look.entries[print.entry];
    // Sorted by their keys, those of the print in the place of properties of the same name.
    std::map<std::string, Node> items = identityOf(entry);
    if (print.isFirst) addFacts(items, entry);
    if (!print.beneath.empty()) {
      Node children(plist_new_array());
      for (const EntryPrint& child : print.beneath)
        append(children, dictionaryOf(child));
      items["IORegistryEntryChildren"] = std::move(children);
    }
    Node dictionary(plist_new_dict());
    for (auto& [key, value] : items)
      put(dictionary, key, std::move(value));
    return dictionary;
  }

 private:
  static std::map<std::string, Node> identityOf(const RecordedEntry& entry) {
    std::map<std::string, Node> items;
    items["IORegistryEntryID"] = Node(plist_new_uint(entry.id));
    items["IORegistryEntryName"] = textNode(entry.name);
    items["IOObjectClass"] = textNode(entry.className);
    return items;
  }

  static void addFacts(std::map<std::string, Node>& items, const RecordedEntry& entry) {
    if (!entry.location.empty()) items["IORegistryEntryLocation"] = textNode(entry.location);
    items["IOObjectInheritance"] = nodeOf(json(entry.inheritance));
    if (entry.isService || entry.isMatched) {
      items["IOServiceState"] = Node(plist_new_uint(entry.isMatched ? SettledState : 0));
    }
    for (const auto& [key, value] : entry.properties.items()) {
      if (!isPrinted(key) && items.count(key) == 0) items[key] = nodeOf(value);
    }
  }

  // What ioreg itself puts among the properties, wherever an entry has a property of that name.
  static bool isPrinted(const std::string& key) {
    return key == "IORegistryEntryChildren" || key == "IORegistryEntryLocation" ||
           key == "IOObjectRetainCount" || key == "IOServiceState" || key == "IOServiceBusyState" ||
           key == "IOServiceBusyTime";
  }

  const RegistryLook& _look;
};

}  // namespace

std::string archiveOf(const RegistryLook& look) {
  const Node top = ArchiveWriter(look).dictionaryOf(planPrints(look));
  char* text = nullptr;
  std::uint32_t size = 0;
  plist_to_xml(top.get(), &text, &size);
  const std::unique_ptr<char, FreeText> held(text);
  if (held == nullptr) throw std::bad_alloc();
  return {held.get(), size};
}

}  // namespace Program
