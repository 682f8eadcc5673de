// On the in-memory registry: a two-bay enclosure with a mirror on its two disks, staged as the
// system would show it, in virtual time.

#include <string>
#include <utility>

#include "Enclosure.h"
#include "platform/pelago/VirtualClock.h"
#include "platform/registry/memory/MemoryRegistry.h"

using MemoryRegistry::Array;
using MemoryRegistry::Dictionary;
using MemoryRegistry::EntryID;

namespace {

constexpr std::uint64_t UID = 0x0102030405060708;

EntryID add(EntryID parent, const std::string& className, const std::string& name = "",
            const std::string& location = "", Dictionary properties = {}) {
  MemoryRegistry::EntryDescription entry;
  entry.className = className;
  if (!name.empty()) entry.name = name;
  entry.location = location;
  entry.properties = std::move(properties);
  return MemoryRegistry::add(parent, std::move(entry));
}

EntryID addBridge(EntryID parent, const std::string& name, const std::string& location) {
  const EntryID bridge = add(parent, "IOPCIDevice", name, location, {{"IOName", "pci-bridge"}});
  return add(bridge, "IOPCI2PCIBridge", "IOPP");
}

void addSwitch(EntryID parent, const std::string& pciPath) {
  const EntryID enclosure = add(parent, "IOThunderboltSwitchType2", "", "",
                                {{"UID", MemoryRegistry::number64(UID)},
                                 {"Depth", 1},
                                 {"Device Vendor ID", 3},
                                 {"Device Vendor Name", "Example Storage"},
                                 {"Device Model ID", 2},
                                 {"Device Model Name", "Two Bay"}});
  add(enclosure, "IOThunderboltPort", "", "A",
      {{"Adapter Type", 0x100102}, {"PCI Path", pciPath}, {"PCI Device", 3}});
}

// A disk with one partition, which is a member of the set.
EntryID addMember(EntryID controller, const std::string& port, const std::string& uuid) {
  const EntryID disk = add(add(controller, "AppleAHCIPort", "PRT" + port, port), "IOAHCIDevice");
  const EntryID scheme = add(add(disk, "IOMedia"), "IOGUIDPartitionScheme");
  const EntryID partition = add(scheme, "IOMedia", "", "1");
  add(partition, "IOMediaBSDClient");
  return add(partition, "AppleRAIDMember", "", "",
             {{"AppleRAID-MemberUUID", uuid}, {"AppleRAID-MemberStatus", "Online"}});
}

}  // namespace

std::uint64_t exampleEnclosure() {
  const EntryID computer = add(MemoryRegistry::root(), "IOPlatformExpertDevice", "Host1,1");
  const EntryID bus = add(computer, "AppleACPIPCI");
  const EntryID upstream = addBridge(bus, "UPS0", "0");
  addSwitch(bus, MemoryRegistry::path(bus) + "/UPS0@0");
  const EntryID function = add(addBridge(upstream, "pci-bridge", "3"), "IOPCIDevice", "ahci", "0");
  const EntryID controller = add(function, "AppleAHCI");
  const EntryID first = addMember(controller, "0", "MEMBER-1");
  const EntryID second = addMember(controller, "1", "MEMBER-2");
  const EntryID set = add(first, "AppleRAIDMirrorSet", "", "",
                          {{"AppleRAID-SetUUID", "SET-1"},
                           {"AppleRAID-SetName", "Projects"},
                           {"AppleRAID-SetStatus", "Online"},
                           {"AppleRAID-LevelName", "Mirror"},
                           {"AppleRAID-Members", Array{"MEMBER-1", "MEMBER-2"}}});
  MemoryRegistry::attach(set, second);
  return UID;
}

std::unique_ptr<Pelago::Clock> exampleClock() { return std::make_unique<Pelago::VirtualClock>(); }
