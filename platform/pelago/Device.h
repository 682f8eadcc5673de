#pragma once

#include <cstdint>

namespace Pelago {

// A device that discovery has found. Passed by reference and copied freely.
struct Device {
  // The kind whose id is the UID of a Thunderbolt switch.
  static constexpr std::uint32_t ThunderboltType = 4;

  std::uint64_t id = 0;    // unique among the devices of one type
  std::uint32_t type = 0;  // the kind of device, in discovery's numbering
};

inline bool operator==(const Device& a, const Device& b) {
  return a.id == b.id && a.type == b.type;
}

}  // namespace Pelago
