#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Program {

// An entry as it was found. Properties are values of JSON: data is binary, and null stands for a
// value that can't be read as anything.
struct RecordedEntry {
  std::uint64_t id = 0;
  std::string name;
  std::string location;  // empty: none
  std::string className;
  std::vector<std::string> inheritance;  // root first, ending in the class itself
  bool isService = false;
  bool isMatched = false;  // found by matching
  nlohmann::json properties = nlohmann::json::object();
  std::vector<std::size_t> children;  // places among the entries, in order
  std::vector<std::size_t> parents;   // the same, in order of attachment

  bool derivesFrom(const char* ancestor) const;
};

// What a registry held at one moment, in the plane of services.
struct RegistryLook {
  std::vector<RecordedEntry> entries;  // the first is the root
};

// Whether both hold the same: entries, links, classes and properties. Counters that run by
// themselves, those of input and output above all, don't count.
bool sameContent(const RegistryLook& a, const RegistryLook& b);

}  // namespace Program
