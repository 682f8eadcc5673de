#pragma once

#include <cstddef>
#include <string_view>

namespace MemoryRegistry {

struct EmbeddedText {
  std::string_view name;
  const std::string_view* pieces;
  std::size_t pieceCount;
};

// class-chains.tsv, one line per class in bytewise order: the class, a tab, its inheritance as
// classes joined by ":", root first, ending in the class itself. Where systems differ, the
// newest's.
extern const EmbeddedText classChains[];
extern const std::size_t classChainsCount;

// The inheritance of a class in that form; empty for a class that is not in the table.
std::string_view recordedChain(std::string_view className);

}  // namespace MemoryRegistry
