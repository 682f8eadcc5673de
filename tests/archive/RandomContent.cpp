#include "tests/archive/RandomContent.h"

#include <rapidcheck.h>

#include <algorithm>

using MemoryRegistry::EntryDescription;
using MemoryRegistry::EntryID;
using MemoryRegistry::Number;
using MemoryRegistry::RegistryContent;

Number randomNumber() {
  const auto bits = *rc::gen::oneOf(rc::gen::arbitrary<std::uint64_t>(),
                                    rc::gen::inRange<std::uint64_t>(0x7FFFFFF0, 0x80000010),
                                    rc::gen::inRange<std::uint64_t>(0, 100));
  return Number{bits, bits <= 0x7FFFFFFF ? 32U : 64U};
}

RegistryContent randomContent(const std::function<EntryDescription()>& describe) {
  RegistryContent content;
  const auto size = static_cast<std::size_t>(*rc::gen::inRange(1, 8));
  const auto firstID = *rc::gen::inRange<EntryID>(1, EntryID{1} << 62);
  std::vector<std::size_t> way;
  for (std::size_t i = 0; i < size; ++i) {
    content.entries.push_back({firstID + i, describe(), {}, {}});
    if (i > 0) {
      way.resize(*rc::gen::inRange<std::size_t>(1, way.size() + 1));
      content.entries[way.back()].children.push_back(i);
      content.entries[i].parents.push_back(way.back());
      // Whatever is before it and not above it can be printed below it again.
      const auto other = *rc::gen::inRange<std::size_t>(0, i + 1);
      if (other < i && std::find(way.begin(), way.end(), other) == way.end()) {
        content.entries[i].children.push_back(other);
        content.entries[other].parents.push_back(i);
      }
    }
    way.push_back(i);
  }
  return content;
}
