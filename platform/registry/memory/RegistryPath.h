#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace MemoryRegistry {

class Graph;
struct Entry;

// The only plane that there is.
bool isServicePlane(const char* plane);

// The path of an entry, written without memory from the heap.
class RegistryPath {
 public:
  static constexpr std::size_t Longest = 509;

  RegistryPath(Graph& graph, const Entry& entry);

  // Empty when the entry has no path or too long a one.
  std::string_view text() const { return {_text.data() + _start, _text.size() - _start}; }

 private:
  bool prepend(std::string_view text);
  bool prependComponent(const Entry& entry);
  bool build(Graph& graph, const Entry& entry);

  std::array<char, Longest> _text;
  std::size_t _start = Longest;  // written from the end to the front
};

// The entry at the path; null when nothing is there.
Entry* entryAtPath(Graph& graph, std::string_view path);

}  // namespace MemoryRegistry
