#pragma once

#include <cstdint>

#include "tests/support/EntryStaging.h"

namespace TestSupport {

// The computer without enclosures: PCI with a Thunderbolt controller that has four tunnels, and the
// computer's own switch with a lane port for each.
class HostTree {
 public:
  static constexpr unsigned Tunnels = 4;
  static constexpr std::uint64_t OwnSwitchUID = 0x0001000000000001;

  HostTree();

  // Where the PCI side of an enclosure goes: the driver beneath the tunnel's bridge.
  EntryID tunnel(unsigned index) const { return _tunnels[index]; }
  // Where its Thunderbolt side goes.
  EntryID lanePort(unsigned index) const { return _lanePorts[index]; }
  EntryID ownSwitch() const { return _ownSwitch; }
  // The PCI bridge above all others.
  EntryID rootPort() const { return _rootPort; }

 private:
  EntryID addThunderbolt(EntryID controllerSlot);

  EntryID _tunnels[Tunnels] = {};
  EntryID _lanePorts[Tunnels] = {};
  EntryID _ownSwitch = 0;
  EntryID _rootPort = 0;
};

}  // namespace TestSupport
