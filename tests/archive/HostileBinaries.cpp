#include <algorithm>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "tests/archive/BinaryBuilder.h"
#include "tests/archive/HostileArchives.h"
#include "tests/archive/Support.h"

namespace {

using namespace std::string_literals;
using MemoryRegistry::containerCost;
using MemoryRegistry::textCost;

constexpr std::size_t referenceSize = 4;

std::string reference(std::size_t number) { return BinaryBuilder::number(number, referenceSize); }

// How many nodes of that cost the limit on memory lets through.
std::size_t affordable(std::uint64_t cost) {
  return (MemoryRegistry::memoryLimit(hostileSize) - hostileSize - 100'000) / cost;
}

std::string head(unsigned kind, std::size_t count) {
  return static_cast<char>(kind << 4U | 0x0FU) + "\x12"s + BinaryBuilder::number(count, 4);
}

// An archive whose root has one property, the object 5; `objects` come from there on.
std::string archiveOf(const std::vector<std::string>& objects, const std::string& key = "k") {
  BinaryBuilder builder;
  builder.referenceSize = referenceSize;
  builder.objects = {"\xD3"s + reference(1) + reference(2) + reference(3) + reference(3) +
                         reference(4) + reference(5),
                     BinaryBuilder::text("IOObjectClass"), BinaryBuilder::text("IORegistryEntryID"),
                     BinaryBuilder::text(key), "\x10\1"s};
  builder.objects.insert(builder.objects.end(), objects.begin(), objects.end());
  const std::size_t size = builder.build().size();
  // Data that nothing refers to costs the archive nothing.
  if (size + 100 < hostileSize) {
    builder.objects.push_back(head(0x4, hostileSize - size) +
                              std::string(hostileSize - size, '\0'));
  }
  return builder.build();
}

// One array with `count` references to the same object.
std::string shared(const std::string& object, std::uint64_t cost) {
  const std::size_t count = std::min<std::size_t>(affordable(cost), 2'400'000);
  std::string array = head(0xA, count);
  for (std::size_t i = 0; i < count; ++i)
    array += reference(6);
  return archiveOf({array, object});
}

// One array with `count` objects of their own.
std::string own(const std::function<std::string(std::size_t)>& object, std::uint64_t cost,
                std::size_t size) {
  const std::size_t count = std::min(affordable(cost), hostileSize / (size + 2 * referenceSize));
  std::vector<std::string> objects{head(0xA, count)};
  for (std::size_t i = 0; i < count; ++i) {
    objects[0] += reference(6 + i);
    objects.push_back(object(i));
  }
  return archiveOf(objects);
}

std::string doubling() {
  std::vector<std::string> objects;
  for (std::size_t level = 0; level < 19; ++level)
    objects.push_back("\xA2"s + reference(6 + level) + reference(6 + level));
  objects.push_back("\xA0");
  return archiveOf(objects);
}

std::string endless() {
  std::vector<std::string> objects;
  for (std::size_t level = 0; level < 1'000'000; ++level)
    objects.push_back("\xA1"s + reference(6 + level));
  objects.push_back("\x09");
  return archiveOf(objects);
}

// As many nodes as may be at the greatest depth.
std::string deepAndWide() {
  constexpr std::size_t levels = 990;
  constexpr std::size_t nodes = 180'000;
  std::vector<std::string> objects;
  for (std::size_t level = 0; level < levels; ++level)
    objects.push_back("\xA1"s + reference(6 + level));
  objects.push_back(head(0xA, nodes));
  for (std::size_t i = 0; i < nodes; ++i)
    objects.back() += reference(6 + levels);
  objects.push_back("\x09");
  return archiveOf(objects);
}

// The keys one after another, then the values, which are all the same.
std::string dictionary(std::size_t count, const std::function<std::size_t(std::size_t)>& key,
                       const std::vector<std::string>& keys) {
  std::vector<std::string> objects{head(0xD, count), "\x09"};
  for (std::size_t i = 0; i < count; ++i)
    objects[0] += reference(7 + key(i));
  for (std::size_t i = 0; i < count; ++i)
    objects[0] += reference(6);
  objects.insert(objects.end(), keys.begin(), keys.end());
  return archiveOf(objects);
}

std::string sameKey() {
  return dictionary(affordable(2 * textCost + 2), [](std::size_t) { return 0; }, {"\x51k"});
}

std::string manyKeys() {
  const std::size_t count = affordable(2 * textCost + 14);
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < count; ++i)
    keys.push_back("\x57"s + std::to_string(1'000'000 + i));
  return dictionary(
      count, [](std::size_t i) { return i; }, keys);
}

// Entries that differ in nothing but the ID.
std::string entries() {
  const std::size_t count = affordable(5 * textCost + containerCost + 80);
  std::vector<std::string> objects{head(0xA, count)};
  std::vector<std::string> numbers;
  for (std::size_t i = 0; i < count; ++i) {
    objects[0] += reference(6 + i);
    objects.push_back("\xD2"s + reference(1) + reference(2) + reference(3) +
                      reference(6 + count + i));
    numbers.push_back("\x12"s + BinaryBuilder::number(i + 2, 4));
  }
  objects.insert(objects.end(), numbers.begin(), numbers.end());
  return archiveOf(objects, "IORegistryEntryChildren");
}

}  // namespace

std::vector<HostileArchive> hostileBinaries() {
  return {
      {"one boolean, shared", [] { return shared("\x09", textCost); }},
      {"one string, shared", [] { return shared("\x51x", textCost + 2); }},
      {"one long string, shared",
       [] { return shared(BinaryBuilder::text(std::string(1000, 'x')), textCost + 2000); }},
      {"one very long string, shared too often",
       [] { return shared(BinaryBuilder::text(std::string(1'000'000, 'x')), textCost); }},
      {"one wide string, shared",
       [] { return shared("\x6F\x11\x01\xF4" + repeated("\xFF\x21", 500), textCost + 3000); }},
      {"one datum, shared",
       [] { return shared(head(0x4, 5000) + std::string(5000, 'x'), textCost + 10'000); }},
      {"one array, shared", [] { return shared("\xA0", containerCost); }},
      {"one dictionary, shared", [] { return shared("\xD0", containerCost); }},
      {"one dictionary of an item, shared",
       [] {
         return shared("\xD1"s + reference(3) + reference(3), containerCost + 2 * (textCost + 2));
       }},
      {"booleans", [] { return own([](std::size_t) { return "\x09"s; }, textCost, 1); }},
      {"strings", [] { return own([](std::size_t) { return "\x51x"s; }, textCost + 2, 2); }},
      {"reals",
       [] { return own([](std::size_t) { return "\x23"s + std::string(8, '\1'); }, textCost, 9); }},
      {"long strings",
       [] {
         return own([](std::size_t) { return BinaryBuilder::text(std::string(200, 'x')); },
                    textCost + 400, 206);
       }},
      {"one string",
       [] { return archiveOf({BinaryBuilder::text(std::string(hostileSize, 'x'))}); }},
      {"one wide string",
       [] {
         return archiveOf({head(0x6, hostileSize / 2) + repeated("\xFF\x21", hostileSize / 2)});
       }},
      {"one datum",
       [] { return archiveOf({head(0x4, hostileSize) + std::string(hostileSize, 'x')}); }},
      {"doubling", doubling},
      {"endless nesting", endless},
      {"deep and wide", deepAndWide},
      {"one key again and again", sameKey},
      {"many keys", manyKeys},
      {"entries", entries},
  };
}
