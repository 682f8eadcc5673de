#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/registry/memory/Entry.h"
#include "platform/registry/memory/RegistryIterator.h"

namespace MemoryRegistry {

class Graph;

// An iteration over links as they were when it began. Never invalid; what has been terminated since
// is passed over.
class Snapshot final : public RegistryIterator {
 public:
  explicit Snapshot(Graph& graph) : _graph(graph) {}

  void begin(const Links& links);

  std::uint32_t next() override;
  bool isValid() override { return true; }
  void reset() override { _place = 0; }
  void recycle() noexcept override;

 private:
  struct Seen {
    std::uint32_t slot;
    std::uint64_t birth;
  };

  Graph& _graph;
  std::vector<Seen> _entries;
  std::size_t _place = 0;
};

}  // namespace MemoryRegistry
