#pragma once

#include <cstdint>

namespace Pelago {

// A device that discovery has found: which kind, and which one of that kind.
//
// Ownership: a plain value, which holds nothing. Callbacks get it by reference, for the call; who
//            wants it longer copies it.
// Thread:    any; two threads that share one object look to that themselves.
// Failure:   nothing here fails. A device of another type than ThunderboltType is no RAID host.
//
// \code
// // What the switch's property "UID" says, as ioreg prints it.
// Pelago::Device enclosureOf(std::uint64_t uid) { return {uid, Pelago::Device::ThunderboltType}; }
// \endcode
struct Device {
  // The kind whose id is the UID of a Thunderbolt switch.
  static constexpr std::uint32_t ThunderboltType = 4;

  std::uint64_t id = 0;    // unique among the devices of one type
  std::uint32_t type = 0;  // the kind of device, in discovery's numbering
};

// Whether they are the same device: the same id of the same type.
inline bool operator==(const Device& a, const Device& b) {
  return a.id == b.id && a.type == b.type;
}

}  // namespace Pelago
