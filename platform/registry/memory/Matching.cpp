#include "platform/registry/memory/Matching.h"

#include <algorithm>
#include <string_view>
#include <variant>

#include "platform/registry/memory/CFNumbers.h"
#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/Graph.h"
#include "platform/registry/memory/PropertyMatching.h"
#include "platform/registry/memory/RegistryPath.h"

namespace MemoryRegistry {

namespace {

template <class Value>
const Value* as(CFTypeRef value, CFType type) {
  return typeOf(value) == type ? static_cast<const Value*>(value) : nullptr;
}
const __CFString* asString(CFTypeRef value) { return as<__CFString>(value, CFType::StringType); }

// A condition on one value, or on any of an array of them.
template <class Condition>
bool anyOf(CFTypeRef sought, Condition condition) {
  const auto* several = as<__CFArray>(sought, CFType::ArrayType);
  if (several == nullptr) return condition(sought);
  return std::any_of(several->values.begin(), several->values.end(), condition);
}

const PropertyValue* property(const Entry& entry, CFTypeRef key) {
  const __CFString* name = asString(key);
  const Symbol symbol = name != nullptr ? keyOf(*name) : nullptr;
  return symbol != nullptr ? entry.facts.property(symbol) : nullptr;
}

bool hasEqualProperty(const Entry& entry, CFTypeRef key, CFTypeRef sought) {
  const PropertyValue* value = property(entry, key);
  return value != nullptr && matches(*value, sought);
}

bool hasProperties(const Entry& entry, CFTypeRef sought) {
  const auto* wanted = as<__CFDictionary>(sought, CFType::DictionaryType);
  return wanted != nullptr &&
         std::all_of(wanted->pairs.begin(), wanted->pairs.end(), [&entry](const auto& pair) {
           return hasEqualProperty(entry, pair.key, pair.value);
         });
}

// ---- One function for each key that restricts

bool propertyMatch(Graph&, const Entry& entry, CFTypeRef sought) {
  return anyOf(sought, [&entry](CFTypeRef wanted) { return hasProperties(entry, wanted); });
}

bool propertyExistsMatch(Graph&, const Entry& entry, CFTypeRef sought) {
  const auto isThere = [&entry](CFTypeRef key) { return property(entry, key) != nullptr; };
  const auto* several = as<__CFArray>(sought, CFType::ArrayType);
  if (several == nullptr) return isThere(sought);
  return std::all_of(several->values.begin(), several->values.end(), isThere);
}

// Data holds one name after the other, each with a NUL.
bool listsName(std::string_view names, std::string_view name) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('\0'), names.size());
    if (names.substr(0, end) == name) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
}

bool isCompatible(const Entry& entry, std::string_view name) {
  static const Symbol key = intern("compatible");
  const PropertyValue* compatible = entry.facts.property(key);
  if (compatible == nullptr) return false;
  if (const auto* text = std::get_if<std::string>(&compatible->variant())) return *text == name;
  const auto* data = std::get_if<Data>(&compatible->variant());
  return data != nullptr && !data->empty() &&
         listsName({reinterpret_cast<const char*>(data->data()), data->size()}, name);
}

bool nameMatch(Graph&, const Entry& entry, CFTypeRef sought) {
  return anyOf(sought, [&entry](CFTypeRef wanted) {
    const __CFString* name = asString(wanted);
    return name != nullptr &&
           (entry.facts.name->text == name->text || isCompatible(entry, name->text));
  });
}

bool locationMatch(Graph&, const Entry& entry, CFTypeRef sought) {
  const __CFString* location = asString(sought);
  return location != nullptr && entry.facts.location != nullptr &&
         entry.facts.location->text == location->text;
}

bool pathMatch(Graph& graph, const Entry& entry, CFTypeRef sought) {
  const __CFString* path = asString(sought);
  return path != nullptr && entryAtPath(graph, path->text) == &entry;
}

bool idMatch(Graph&, const Entry& entry, CFTypeRef sought) {
  const auto* id = as<__CFNumber>(sought, CFType::NumberType);
  return id != nullptr && !id->isReal() && static_cast<EntryID>(id->integer) == entry.id;
}

struct Restriction {
  std::string_view key;
  bool (*holds)(Graph& graph, const Entry& entry, CFTypeRef sought);
};
constexpr Restriction restrictions[] = {
    {"IOPropertyMatch", propertyMatch}, {"IOPropertyExistsMatch", propertyExistsMatch},
    {"IONameMatch", nameMatch},         {"IOLocationMatch", locationMatch},
    {"IOPathMatch", pathMatch},         {"IORegistryEntryID", idMatch},
};

// Keys that are compared with the property of the same name, for all services and for media.
constexpr std::string_view comparedKeys[] = {"BSD Name", "BSD Major", "BSD Minor", "BSD Unit"};
constexpr std::string_view comparedMediaKeys[] = {
    "Content",   "Content Hint", "Ejectable", "Leaf",  "Open",    "Preferred Block Size",
    "Removable", "Size",         "UUID",      "Whole", "Writable"};

template <class Keys>
bool holds(const Keys& keys, std::string_view key) {
  return std::find(std::begin(keys), std::end(keys), key) != std::end(keys);
}

bool isMedia(const Entry& entry) {
  static const std::uint32_t media = classNumberOf(intern("IOMedia"));
  return entry.facts.classInfo->derivesFrom(media);
}

// What one pair of a matching dictionary asks for, found out once for all entries.
class Condition {
 public:
  explicit Condition(const __CFDictionary::Pair& wanted) : _wanted(&wanted) {
    const __CFString* key = asString(wanted.key);
    if (key == nullptr) return;
    const auto* restriction =
        std::find_if(std::begin(restrictions), std::end(restrictions),
                     [key](const Restriction& candidate) { return candidate.key == key->text; });
    if (restriction != std::end(restrictions)) _restriction = restriction->holds;
    _isCompared = holds(comparedKeys, key->text);
    _isComparedForMedia = holds(comparedMediaKeys, key->text);
  }

  bool restricts() const { return _restriction != nullptr || _isCompared || _isComparedForMedia; }

  bool isMetBy(Graph& graph, const Entry& entry) const {
    if (_restriction != nullptr) return _restriction(graph, entry, _wanted->value);
    if (!_isCompared && !isMedia(entry)) return true;
    return hasEqualProperty(entry, _wanted->key, _wanted->value);
  }

 private:
  const __CFDictionary::Pair* _wanted;
  decltype(Restriction::holds) _restriction = nullptr;
  bool _isCompared = false;
  bool _isComparedForMedia = false;
};

std::vector<Condition> conditionsOf(const __CFDictionary& matching) {
  std::vector<Condition> conditions;
  for (const auto& pair : matching.pairs) {
    const Condition condition(pair);
    if (condition.restricts()) conditions.push_back(condition);
  }
  return conditions;
}

bool canBeFound(const Entry& entry) {
  constexpr std::uint32_t found = Registered | Matched;
  if (!entry.facts.hasState) return entry.facts.classInfo->service;
  return (entry.facts.state & (found | Inactive)) == found;
}

const CFTypeRef* providerClass(const __CFDictionary& matching) {
  for (const auto& pair : matching.pairs) {
    const __CFString* key = asString(pair.key);
    if (key != nullptr && key->text == "IOProviderClass") return &pair.value;
  }
  return nullptr;
}

// Calls `visit` with every service of the class that is wanted, in no order, and with what tells
// whether it meets the rest.
template <class Visit>
void visitServices(Graph& graph, const __CFDictionary& matching, Visit visit) {
  const CFTypeRef* wanted = providerClass(matching);
  const __CFString* className = wanted != nullptr ? asString(*wanted) : nullptr;
  if (wanted != nullptr && className == nullptr) return;
  const Symbol symbol = className != nullptr ? findSymbol(className->text) : nullptr;
  if (className != nullptr && symbol == nullptr) return;

  const std::vector<Condition> conditions = conditionsOf(matching);
  const auto meetsAll = [&](const Entry& entry) {
    return std::all_of(conditions.begin(), conditions.end(),
                       [&](const Condition& condition) { return condition.isMetBy(graph, entry); });
  };
  for (const auto& candidates : ClassTable::instance().all()) {
    if (symbol != nullptr && !candidates->derivesFrom(classNumberOf(symbol))) continue;
    for (Entry* entry = candidates->instances; entry != nullptr; entry = entry->nextOfClass)
      visit(*entry, meetsAll);
  }
}

}  // namespace

Entry* findService(Graph& graph, const __CFDictionary& matching) {
  Entry* found = nullptr;
  visitServices(graph, matching, [&found](Entry& entry, const auto& meetsAll) {
    const bool earlier = found == nullptr || entry.id < found->id;
    if (earlier && canBeFound(entry) && meetsAll(entry)) found = &entry;
  });
  return found;
}

std::vector<Entry*> findServices(Graph& graph, const __CFDictionary& matching) {
  std::vector<Entry*> found;
  visitServices(graph, matching, [&found](Entry& entry, const auto& meetsAll) {
    if (canBeFound(entry) && meetsAll(entry)) found.push_back(&entry);
  });
  std::sort(found.begin(), found.end(),
            [](const Entry* a, const Entry* b) { return a->id < b->id; });
  return found;
}

}  // namespace MemoryRegistry
