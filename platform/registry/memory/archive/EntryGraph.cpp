#include "platform/registry/memory/archive/EntryGraph.h"

#include <algorithm>
#include <vector>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/EntryPrint.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

bool contains(const std::vector<std::size_t>& places, std::size_t place) {
  return std::find(places.begin(), places.end(), place) != places.end();
}

// Looks through the shorter list, so that neither many children nor many parents cost much.
bool isLinked(const RegistryContent::Entry& parent, std::size_t parentPlace,
              const RegistryContent::Entry& child, std::size_t childPlace) {
  return parent.children.size() < child.parents.size() ? contains(parent.children, childPlace)
                                                       : contains(child.parents, parentPlace);
}

// Climbs from an entry that no order of parents before children reaches: every such entry has a
// parent of that kind, so the climb comes back to where it has been.
std::size_t entryBeneathItself(const RegistryContent& content,
                               const std::vector<std::size_t>& unmetParents) {
  std::vector<bool> visited(content.entries.size(), false);
  const auto isUnmet = [&](std::size_t place) { return unmetParents[place] != 0; };
  auto place = static_cast<std::size_t>(std::find_if(unmetParents.begin(), unmetParents.end(),
                                                     [](std::size_t count) { return count != 0; }) -
                                        unmetParents.begin());
  while (!visited[place]) {
    visited[place] = true;
    const auto& parents = content.entries[place].parents;
    place = *std::find_if(parents.begin(), parents.end(), isUnmet);
  }
  return place;
}

}  // namespace

void link(RegistryContent& content, std::size_t parent, std::size_t child) {
  auto& above = content.entries[parent];
  auto& below = content.entries[child];
  if (isLinked(above, parent, below, child)) return;
  above.children.push_back(child);
  below.parents.push_back(parent);
}

void checkGraph(const RegistryContent& content) {
  const auto& entries = content.entries;
  std::vector<std::size_t> unmetParents(entries.size());
  std::vector<std::size_t> depth(entries.size(), 1);
  for (std::size_t i = 0; i < entries.size(); ++i)
    unmetParents[i] = entries[i].parents.size();

  std::vector<std::size_t> ready{0};
  std::size_t met = 0;
  while (!ready.empty()) {
    const std::size_t place = ready.back();
    ready.pop_back();
    ++met;
    if (depth[place] > deepestEntry) {
      throw Refusal("entries are nested deeper than " + decimal(deepestEntry) + " levels");
    }
    for (const std::size_t child : entries[place].children) {
      depth[child] = std::max(depth[child], depth[place] + 1);
      if (--unmetParents[child] == 0) ready.push_back(child);
    }
  }
  if (met == entries.size()) return;
  throw Refusal(entryText(entries[entryBeneathItself(content, unmetParents)].id) +
                " is beneath itself");
}

}  // namespace MemoryRegistry
