#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/registry/memory/Replacement.h"

namespace MemoryRegistry {

namespace {

using Entries = std::vector<RegistryContent::Entry>;
using Edge = std::pair<std::size_t, std::size_t>;  // parent, child

[[noreturn]] void refuse(const std::string& reason) { throw std::invalid_argument(reason); }

std::vector<std::size_t> orderByID(const Entries& entries) {
  std::vector<std::size_t> order(entries.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto byID = [&entries](std::size_t a, std::size_t b) {
    return entries[a].id < entries[b].id;
  };
  if (!std::is_sorted(order.begin(), order.end(), byID))
    std::sort(order.begin(), order.end(), byID);
  if (entries[order.front()].id == 0) refuse("an entry without an ID");
  const auto twice = std::adjacent_find(
      order.begin(), order.end(),
      [&entries](std::size_t a, std::size_t b) { return entries[a].id == entries[b].id; });
  if (twice != order.end()) refuse("the ID " + std::to_string(entries[*twice].id) + " twice");
  return order;
}

std::vector<Edge> sortedEdges(std::vector<Edge> edges) {
  if (!std::is_sorted(edges.begin(), edges.end())) std::sort(edges.begin(), edges.end());
  if (std::adjacent_find(edges.begin(), edges.end()) != edges.end()) {
    refuse("a second link between the same two entries");
  }
  return edges;
}

void requireConsistentLinks(const Entries& entries) {
  std::vector<Edge> down;
  std::vector<Edge> up;
  for (std::size_t place = 0; place < entries.size(); ++place) {
    for (const std::size_t child : entries[place].children)
      down.emplace_back(place, child);
    for (const std::size_t parent : entries[place].parents)
      up.emplace_back(parent, place);
  }
  if (sortedEdges(std::move(down)) != sortedEdges(std::move(up))) {
    refuse("children and parents that do not agree");
  }
}

void requirePlaces(const std::vector<std::size_t>& places, std::size_t count) {
  for (const std::size_t place : places) {
    if (place >= count) refuse("a link to a place outside the content");
  }
}

// Takes away, again and again, an entry whose parents are all taken; on a cycle some remain.
void requireNoCycle(const Entries& entries) {
  std::vector<std::size_t> holders(entries.size());
  std::transform(entries.begin(), entries.end(), holders.begin(),
                 [](const auto& entry) { return entry.parents.size(); });
  std::vector<std::size_t> taken = {0};
  taken.reserve(entries.size());
  for (std::size_t next = 0; next < taken.size(); ++next) {
    for (const std::size_t child : entries[taken[next]].children) {
      if (--holders[child] == 0) taken.push_back(child);
    }
  }
  if (taken.size() != entries.size()) refuse("an entry beneath itself");
}

}  // namespace

std::vector<std::size_t> orderOfValid(const RegistryContent& content) {
  const Entries& entries = content.entries;
  if (entries.empty()) refuse("content without a root");
  if (!entries.front().parents.empty()) refuse("a root with a parent");
  for (std::size_t place = 0; place < entries.size(); ++place) {
    requirePlaces(entries[place].children, entries.size());
    requirePlaces(entries[place].parents, entries.size());
    if (place != 0 && entries[place].parents.empty()) refuse("an entry without a parent");
  }
  requireConsistentLinks(entries);
  requireNoCycle(entries);
  return orderByID(entries);
}

}  // namespace MemoryRegistry
