#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/registry/memory/MemoryRegistry.h"

namespace TestSupport {

// One RAID set of a generated enclosure. Of its members the first `present` have entries; the set
// hangs beneath each of those, and lists them all.
struct SetShape {
  std::size_t members = 2;
  std::size_t present = 2;
  bool isStripe = false;  // with one boot device for each member that is present
};

struct EnclosureShape {
  std::vector<SetShape> sets;
  // Beneath the bridge of the device, filled up with plain entries. Fewer than the sets, disks and
  // controllers need is as many as they need.
  std::size_t entries = 0;
};

// Five disks in two mirrors, 150 entries beneath the bridge.
EnclosureShape fiveBayShape();

// What stands where in one enclosure.
struct GeneratedSet {
  SetShape shape;
  MemoryRegistry::EntryID entry = 0;
  std::vector<MemoryRegistry::EntryID> members;  // those present
};

struct GeneratedEnclosure {
  std::uint64_t uid = 0;
  MemoryRegistry::EntryID bridge = 0;  // the device's own, beneath which everything counts
  std::vector<GeneratedSet> sets;      // those with a member that is present
};

// How many components a boot device's path has; one of them names a controller.
inline constexpr std::size_t BootPathComponents = 4;

// A computer with any number of enclosures from "Example Storage", everything settled, so that a
// device is ready in the call that reports it. Ten tunnels to a controller, ten controllers to a
// root port, ten root ports: look-ups of paths stay alike up to 1,000 enclosures.
class GeneratedRegistry {
 public:
  GeneratedRegistry();

  GeneratedEnclosure add(const EnclosureShape& shape);

 private:
  MemoryRegistry::EntryID nextTunnel();

  MemoryRegistry::EntryID _rootBus = 0;
  MemoryRegistry::EntryID _ownSwitch = 0;
  MemoryRegistry::EntryID _rootPort = 0;
  MemoryRegistry::EntryID _controller = 0;
  std::size_t _enclosures = 0;
};

}  // namespace TestSupport
