#include "application/record/RegistryLook.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace Program {
namespace {

using nlohmann::json;

// Top-level keys whose values change without anything having happened.
bool isCounter(std::string_view key) {
  constexpr std::array<std::string_view, 5> others = {"AppUsage", "DebugState", "HIDIdleTime",
                                                      "accumulatedGPUTime", "lastSubmittedTime"};
  return key.find("Statistics") != std::string_view::npos ||
         std::find(others.begin(), others.end(), key) != others.end();
}

// The first one from there on that is no counter.
template <class Place>
Place skipCounters(Place place, const Place& end) {
  while (place != end && isCounter(place.key()))
    ++place;
  return place;
}

bool sameProperties(const json& a, const json& b) {
  auto left = skipCounters(a.begin(), a.end());
  auto right = skipCounters(b.begin(), b.end());
  while (left != a.end() && right != b.end()) {
    if (left.key() != right.key() || *left != *right) return false;
    left = skipCounters(++left, a.end());
    right = skipCounters(++right, b.end());
  }
  return left == a.end() && right == b.end();
}

auto factsOf(const RecordedEntry& entry) {
  return std::tie(entry.id, entry.name, entry.location, entry.className, entry.inheritance,
                  entry.isService, entry.isMatched, entry.children, entry.parents);
}

}  // namespace

bool RecordedEntry::derivesFrom(const char* ancestor) const {
  return std::find(inheritance.begin(), inheritance.end(), ancestor) != inheritance.end();
}

bool sameContent(const RegistryLook& a, const RegistryLook& b) {
  return std::equal(a.entries.begin(), a.entries.end(), b.entries.begin(), b.entries.end(),
                    [](const RecordedEntry& left, const RecordedEntry& right) {
                      return factsOf(left) == factsOf(right) &&
                             sameProperties(left.properties, right.properties);
                    });
}

}  // namespace Program
