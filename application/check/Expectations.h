#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "application/session/Snapshot.h"

namespace CLI {
class App;
}  // namespace CLI

namespace Program {

// Which volumes whoever is responsible for them wants to find.
struct Expectations {
  std::vector<std::string> uuids;
  std::optional<std::size_t> volumes;  // how many at least
};

// --expect and --expect-volumes.
void addExpectationOptions(CLI::App& parser, Expectations& expected);

// Each once, in upper case.
std::vector<std::string> distinctUUIDs(const Expectations& expected);

// Upper and lower case are the same in a UUID.
bool isThere(const std::string& uuid, const std::vector<EnclosureVolumes>& enclosures);

// A set that two enclosures report counts once.
std::size_t volumesIn(const std::vector<EnclosureVolumes>& enclosures);

}  // namespace Program
