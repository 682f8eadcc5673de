#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/registry/memory/Graph.h"

namespace MemoryRegistry {

// The places in `content` in ascending order of ID. Throws std::invalid_argument, saying why, when
// the content is not what RegistryContent says.
std::vector<std::size_t> orderOfValid(const RegistryContent& content);

// Turns a graph into other content: everything that can fail is done beside the graph, and then the
// two change places.
class Replacement {
 public:
  Replacement(Graph& graph, RegistryContent content);

  void commit() noexcept;

 private:
  using Place = std::size_t;

  struct Prepared {
    Entry* entry = nullptr;  // the one that is kept, or the new one
    bool isNew = false;
    bool childrenChange = true;
    bool parentsChange = true;
    EntryFacts facts;
    std::vector<Entry*> children;
    std::vector<Entry*> parents;
  };

  void matchEntries(const RegistryContent& content, const std::vector<Place>& order);
  void prepareLinks(const RegistryContent& content);
  bool resolve(const std::vector<Place>& places, bool isNew, const Links& current,
               std::vector<Entry*>& resolved) const;
  void retireTheRest() noexcept;
  void put(Prepared& prepared) noexcept;

  Graph& _graph;
  std::vector<Prepared> _prepared;               // as in the content
  std::vector<std::unique_ptr<Entry>> _entries;  // ascending by ID; null: still the graph's
  std::vector<Place> _order;
  EntryID _nextID;
};

}  // namespace MemoryRegistry
