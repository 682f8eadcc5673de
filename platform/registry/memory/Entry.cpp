#include "platform/registry/memory/Entry.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

namespace MemoryRegistry {

namespace {

bool before(const Property& property, Symbol key) { return std::less<>()(property.key, key); }

template <class Properties>
auto placeOf(Properties& properties, Symbol key) {
  return std::lower_bound(properties.begin(), properties.end(), key, before);
}

void readOverride(EntryFacts& facts) {
  static const Symbol key = intern("IOClassNameOverride");
  facts.overridingClass = NoClassNumber;
  const PropertyValue* value = facts.property(key);
  if (value == nullptr) return;
  if (const auto* name = std::get_if<std::string>(&value->variant())) {
    facts.overridingClass = classNumberOf(intern(*name));
  }
}

std::vector<Property> sorted(Dictionary dictionary) {
  std::vector<Property> properties;
  properties.reserve(dictionary.size());
  for (auto& item : dictionary)
    properties.push_back({intern(item.first), std::move(item.second)});
  std::stable_sort(properties.begin(), properties.end(), [](const Property& a, const Property& b) {
    return std::less<>()(a.key, b.key);
  });
  // Of a key given twice, the last one holds.
  const auto kept =
      std::unique(properties.rbegin(), properties.rend(),
                  [](const Property& a, const Property& b) { return a.key == b.key; });
  properties.erase(properties.begin(), kept.base());
  return properties;
}

}  // namespace

const PropertyValue* EntryFacts::property(Symbol key) const {
  const auto place = placeOf(properties, key);
  return place != properties.end() && place->key == key ? &place->value : nullptr;
}

EntryFacts factsOf(EntryDescription description) {
  if (description.className.empty()) throw std::invalid_argument("an entry without a class");
  if (!description.inheritance.empty() && description.inheritance.back() != description.className) {
    throw std::invalid_argument("an inheritance that does not end in the class itself");
  }
  EntryFacts facts;
  facts.classInfo = &ClassTable::instance().find(description.className, description.inheritance,
                                                 description.state.has_value());
  facts.name = description.name ? intern(*description.name) : facts.classInfo->name();
  facts.location = description.location.empty() ? nullptr : intern(description.location);
  facts.hasState = description.state.has_value();
  facts.state = description.state.value_or(0);
  facts.properties = sorted(std::move(description.properties));
  readOverride(facts);
  return facts;
}

void storeProperty(EntryFacts& facts, Symbol key, PropertyValue value) {
  const auto place = placeOf(facts.properties, key);
  if (place != facts.properties.end() && place->key == key) {
    place->value = std::move(value);
  } else {
    facts.properties.insert(place, {key, std::move(value)});
  }
  readOverride(facts);
}

void eraseProperty(EntryFacts& facts, Symbol key) {
  const auto place = placeOf(facts.properties, key);
  if (place == facts.properties.end() || place->key != key) return;
  facts.properties.erase(place);
  readOverride(facts);
}

void enterClass(Entry& entry) {
  Entry*& first = entry.facts.classInfo->instances;
  entry.previousOfClass = nullptr;
  entry.nextOfClass = first;
  if (first != nullptr) first->previousOfClass = &entry;
  first = &entry;
}

void leaveClass(Entry& entry) {
  if (entry.nextOfClass != nullptr) entry.nextOfClass->previousOfClass = entry.previousOfClass;
  if (entry.previousOfClass != nullptr) {
    entry.previousOfClass->nextOfClass = entry.nextOfClass;
  } else {
    entry.facts.classInfo->instances = entry.nextOfClass;
  }
}

}  // namespace MemoryRegistry
