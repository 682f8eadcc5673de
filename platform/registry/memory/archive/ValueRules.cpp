#include "platform/registry/memory/archive/ValueRules.h"

#include <algorithm>
#include <numeric>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {

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

void checkValueDepth(std::size_t depth) {
  if (depth > deepestValue) {
    throw Refusal("has a property nested deeper than " + decimal(deepestValue) + " levels");
  }
}

}  // namespace MemoryRegistry
