#include "platform/registry/memory/ClassChains.h"

#include <algorithm>
#include <iterator>

namespace MemoryRegistry {

namespace {

std::string_view lineAt(std::string_view text, std::size_t start) {
  return text.substr(start, text.find('\n', start) - start);
}

std::string_view classOf(std::string_view line) { return line.substr(0, line.find('\t')); }

// Binary search over the bytes of the text, because an index would cost more than the few hundred
// classes that a process ever asks for.
std::string_view findLine(std::string_view text, std::string_view className) {
  std::size_t low = 0;
  std::size_t high = text.size();
  while (low < high) {
    // The beginning of the line in the middle; npos + 1 is 0, where the first one begins.
    const std::size_t start = text.substr(0, low + (high - low) / 2).rfind('\n') + 1;
    const std::string_view line = lineAt(text, start);
    const int order = classOf(line).compare(className);
    if (order == 0) return line;
    if (order < 0) {
      low = start + line.size() + 1;
    } else {
      high = start;
    }
  }
  return {};
}

}  // namespace

std::string_view recordedChain(std::string_view className) {
  const EmbeddedText& table = classChains[0];
  const auto* const end = table.pieces + table.pieceCount;
  const auto* const after = std::upper_bound(
      table.pieces, end, className,
      [](std::string_view name, const auto& piece) { return name < classOf(lineAt(piece, 0)); });
  if (after == table.pieces) return {};
  const std::string_view line = findLine(*std::prev(after), className);
  return line.empty() ? line : line.substr(line.find('\t') + 1);
}

}  // namespace MemoryRegistry
