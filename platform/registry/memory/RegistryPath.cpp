#include "platform/registry/memory/RegistryPath.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "platform/registry/memory/Graph.h"

namespace MemoryRegistry {

namespace {

constexpr std::string_view planeName = "IOService";
constexpr std::size_t longestComponent = 128;

Entry* firstBelowRoot(Graph& graph) {
  const auto& children = graph.root().children.entries;
  return children.empty() ? nullptr : children.front();
}

// ---- Locations: hexadecimal numbers joined by "," or ":"

bool separates(char character) { return character == ',' || character == ':'; }

std::string_view takePart(std::string_view& location) {
  const std::size_t length = std::min(location.find_first_of(",:"), location.size());
  const std::string_view part = location.substr(0, length);
  location.remove_prefix(std::min(length + 1, location.size()));
  return part;
}

bool isHexadecimalDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool isLocation(std::string_view text) {
  bool inPart = false;
  for (const char c : text) {
    const bool isDigit = isHexadecimalDigit(c);
    if (!isDigit && (!inPart || !separates(c))) return false;
    inPart = isDigit;
  }
  return inPart;
}

// As text, because a part may have any number of digits.
bool sameNumber(std::string_view a, std::string_view b) {
  a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
  b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) ==
           std::tolower(static_cast<unsigned char>(y));
  });
}

bool sameLocation(std::string_view a, std::string_view b) {
  if (!isLocation(a)) return false;
  if (a == b) return true;
  if (!isLocation(b)) return false;
  while (!a.empty() || !b.empty()) {
    if (!sameNumber(takePart(a), takePart(b))) return false;  // a missing part is empty, as 0 is
  }
  return true;
}

// ---- Components

// What follows the component when it names the entry; null data when it does not.
std::string_view restAfter(std::string_view path, const Entry& entry) {
  // A component that begins with its location names no name, and fits by the location alone.
  if (path.empty() || path.front() != '@') {
    const std::string_view name = entry.facts.name->text;
    if (path.compare(0, name.size(), name) != 0) return {};
    path.remove_prefix(name.size());
  }
  if (path.empty() || path.front() == '/' || path.front() == ':') return path;
  if (path.front() != '@' || entry.facts.location == nullptr) return {};
  path.remove_prefix(1);
  const std::size_t length = std::min(path.find('/'), path.size());
  if (!sameLocation(path.substr(0, length), entry.facts.location->text)) return {};
  return path.substr(length);
}

}  // namespace

bool isServicePlane(const char* plane) { return plane != nullptr && plane == planeName; }

RegistryPath::RegistryPath(Graph& graph, const Entry& entry) {
  if (!build(graph, entry)) _start = _text.size();
}

bool RegistryPath::prepend(std::string_view text) {
  if (text.size() > _start) return false;
  _start -= text.size();
  std::memcpy(_text.data() + _start, text.data(), text.size());
  return true;
}

bool RegistryPath::prependComponent(const Entry& entry) {
  const std::string_view name = entry.facts.name->text;
  const std::string_view shown = name.substr(0, longestComponent);
  if (entry.facts.location != nullptr && shown.size() < longestComponent) {
    const std::string_view location = entry.facts.location->text;
    if (!prepend(location.substr(0, longestComponent - shown.size() - 1)) || !prepend("@")) {
      return false;
    }
  }
  return prepend(shown) && prepend("/");
}

// Only what hangs below the root's first child has a path: a path begins there, so nothing else
// could be found again by one.
bool RegistryPath::build(Graph& graph, const Entry& entry) {
  const Entry* const top = firstBelowRoot(graph);
  if (&entry == top) return prepend("IOService:/");
  const Entry* at = &entry;
  for (; at != top; at = at->parents.entries.front()) {
    if (at->parents.entries.empty() || !prependComponent(*at)) return false;
  }
  return prepend("IOService:");
}

Entry* entryAtPath(Graph& graph, std::string_view path) {
  const std::size_t colon = path.find(':');
  if (colon == std::string_view::npos || path.substr(0, colon) != planeName) return nullptr;
  path.remove_prefix(colon + 1);
  Entry* at = firstBelowRoot(graph);
  if (at == nullptr || path.empty() || path.front() != '/') return nullptr;
  if (path == "/") return at;
  while (!path.empty()) {
    if (path.front() != '/') return nullptr;
    path.remove_prefix(1);
    const auto& children = at->children.entries;
    std::string_view rest;
    // The first that fits is taken for good: a path is not looked for under its namesakes.
    const auto found = std::find_if(children.begin(), children.end(), [&](const Entry* child) {
      rest = restAfter(path, *child);
      return rest.data() != nullptr;
    });
    if (found == children.end()) return nullptr;
    at = *found;
    path = rest;
  }
  return at;
}

}  // namespace MemoryRegistry
