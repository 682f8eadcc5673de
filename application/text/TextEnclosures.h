#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "application/session/Snapshot.h"

namespace Program {

// The enclosures that a watch has heard of, and how its lines call them.
class TextEnclosures {
 public:
  void learn(const DeviceSnapshot& enclosure);
  // Only those that are connected are remembered.
  void forgetOthers(const std::vector<DeviceSnapshot>& connected);

  // "Example Storage Two Bay"; with its UID where another one has the same name.
  std::string nameOf(const DeviceSnapshot& enclosure) const;
  // "Example Storage Two Bay 0x00030f1b7461e0a5"
  std::string nameAndUID(std::uint64_t uid) const;

 private:
  std::map<std::uint64_t, std::string> _names;  // by UID; of those that have one
};

}  // namespace Program
