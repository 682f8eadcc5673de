#include "tests/operations/GeneratedRegistry.h"

#include <string>
#include <utility>

#include "tests/support/EntryStaging.h"

namespace TestSupport {

using MemoryRegistry::Array;
using MemoryRegistry::Dictionary;
using MemoryRegistry::EntryID;
using MemoryRegistry::number64;

namespace {

constexpr std::size_t FanOut = 10;
constexpr int LaneAdapter = 1;
constexpr int PCIUpAdapter = 0x100102;

// The driver of a new PCI bridge; what is behind the bridge goes beneath it.
EntryID addBridge(EntryID parent, const std::string& name, const std::string& location) {
  return behindBridge(addPCIBridge(parent, name, location));
}

EntryID addMedia(EntryID parent, const std::string& name, const std::string& location) {
  const EntryID media = addEntry(parent, "IOMedia", name, location, {{"Whole", false}});
  addEntry(media, "IOMediaBSDClient");
  return media;
}

// A disk from its port to the partition for RAID, which is returned: 14 entries.
EntryID addDisk(EntryID controller, std::size_t number) {
  const std::string text = std::to_string(number);
  const EntryID port = addEntry(controller, "AppleAHCIPort", "PRT" + text, text);
  const EntryID disk = addEntry(port, "IOAHCIDevice", "", "0");
  const EntryID device =
      addEntry(addEntry(disk, "AppleAHCIDiskDriver"), "IOAHCIBlockStorageDevice");
  const EntryID block = addEntry(device, "IOBlockStorageDriver");
  const EntryID whole = addMedia(block, "EX4000A " + text + " Media", "");
  const EntryID scheme = addEntry(whole, "IOGUIDPartitionScheme");
  addMedia(scheme, "EFI System Partition", "1");
  const EntryID partition = addMedia(scheme, "Untitled 2", "2");
  addMedia(scheme, "Booter", "3");
  return partition;
}

// Fills one enclosure: controller, disks, members, sets and what else there is.
class Filler {
 public:
  Filler(GeneratedEnclosure& enclosure, EntryID behindBridge)
      : _enclosure(enclosure),
        _text(std::to_string(enclosure.uid)),
        _before(MemoryRegistry::entryCount() - 1) {  // the bridge's driver counts
    _others = addEntry(behindBridge, "IOPCIDevice", "pci1b0a,20", "1");
    const EntryID function = addEntry(behindBridge, "IOPCIDevice", "pci1b0a,10", "0");
    _controller = addEntry(function, "AppleAHCI");
  }

  void addSet(const SetShape& shape) {
    const std::string uuid = "SET-" + _text + "-" + std::to_string(_enclosure.sets.size());
    GeneratedSet set;
    set.shape = shape;
    Array listed;
    for (std::size_t number = 0; number < shape.members; ++number) {
      const std::string memberUUID = uuid + "-MEMBER-" + std::to_string(number);
      listed.emplace_back(memberUUID);
      if (number < shape.present) set.members.push_back(addMember(memberUUID, uuid));
    }
    if (set.members.empty()) return;
    set.entry = addSetEntry(set.members.front(), uuid, shape, std::move(listed));
    for (std::size_t i = 1; i < set.members.size(); ++i)
      MemoryRegistry::attach(set.entry, set.members[i]);
    addSetMedia(set.entry, shape.isStripe ? set.members.size() : 0);
    _enclosure.sets.push_back(std::move(set));
  }

  void fillUpTo(std::size_t entries) {
    while (MemoryRegistry::entryCount() - _before < entries)
      addEntry(_others, "IOService", "plain");
  }

 private:
  EntryID addMember(const std::string& uuid, const std::string& setUUID) {
    return addEntry(addDisk(_controller, ++_disks), "AppleRAIDMember", "", "",
                    {{"AppleRAID-MemberUUID", uuid},
                     {"AppleRAID-MemberStatus", "Online"},
                     {"AppleRAID-SetUUID", setUUID}});
  }

  static EntryID addSetEntry(EntryID parent, const std::string& uuid, const SetShape& shape,
                             Array listed) {
    const std::string level = shape.isStripe ? "Stripe" : "Mirror";
    return addEntry(parent, "AppleRAID" + level + "Set", "", "",
                    {{"AppleRAID-SetUUID", uuid},
                     {"AppleRAID-MemberUUID", uuid},
                     {"AppleRAID-MemberStatus", "Online"},
                     {"AppleRAID-SetName", "Projects"},
                     {"AppleRAID-SetStatus", "Online"},
                     {"AppleRAID-LevelName", level},
                     {"AppleRAID-Members", std::move(listed)}});
  }

  static void addSetMedia(EntryID set, std::size_t bootDevices) {
    Array devices;
    for (std::size_t number = 0; number < bootDevices; ++number) {
      const std::string path = "IODeviceTree:/PCI0@0/pci1b0a,10@0/PRT" + std::to_string(number);
      devices.emplace_back(Dictionary{{"IOBootDevicePath", path}});
    }
    const EntryID media = addMedia(set, "Projects", "0");
    if (!devices.empty()) MemoryRegistry::setProperty(media, "IOBootDevice", std::move(devices));
  }

  GeneratedEnclosure& _enclosure;
  std::string _text;
  std::size_t _before;
  EntryID _others = 0;  // ahead of the disks, so that every walk comes through it
  EntryID _controller = 0;
  std::size_t _disks = 0;
};

EntryID addSwitch(EntryID parent, std::uint64_t uid) {
  const EntryID port =
      addEntry(parent, "IOThunderboltPort", "", "1", {{"Adapter Type", LaneAdapter}});
  return addEntry(port, "IOThunderboltSwitchType2", "", "",
                  {{"UID", number64(uid)},
                   {"Depth", 1},
                   {"Device Vendor ID", number64(3)},
                   {"Device Vendor Name", "Example Storage"},
                   {"Device Model ID", number64(6)},
                   {"Device Model Name", "Five Bay"}});
}

}  // namespace

EnclosureShape fiveBayShape() { return {{{3, 3, false}, {2, 2, false}}, 150}; }

GeneratedRegistry::GeneratedRegistry() {
  const EntryID model = addEntry(MemoryRegistry::root(), "IOPlatformExpertDevice", "Host1,1");
  const EntryID platform = addEntry(model, "AppleACPIPlatformExpert");
  const EntryID pci = addEntry(platform, "IOACPIPlatformDevice", "PCI0", "0");
  _rootBus = addEntry(pci, "AppleACPIPCI");
  const EntryID controller = addEntry(platform, "IOThunderboltController");
  _ownSwitch = addEntry(controller, "IOThunderboltSwitchType2", "", "",
                        {{"UID", number64(1)}, {"Depth", 0}});
}

EntryID GeneratedRegistry::nextTunnel() {
  const auto text = [](std::size_t number) { return std::to_string(number); };
  const std::size_t number = _enclosures++;
  if (number % (FanOut * FanOut) == 0) {
    const std::string place = text(number / (FanOut * FanOut));
    _rootPort = addBridge(_rootBus, "PEG" + place, place);
  }
  if (number % FanOut == 0) {
    const std::string place = text(number / FanOut % FanOut);
    _controller = addBridge(_rootPort, "UPS" + place, place);
  }
  const std::string place = text(number % FanOut);
  return addBridge(_controller, "DSB" + place, place);
}

GeneratedEnclosure GeneratedRegistry::add(const EnclosureShape& shape) {
  const EntryID tunnel = nextTunnel();
  GeneratedEnclosure made;
  made.uid = 0x100000 + _enclosures;
  const EntryID behindUpstream = addBridge(tunnel, "UPS0", "0");
  const EntryID behind = addBridge(behindUpstream, "pci-bridge", "3");
  made.bridge = MemoryRegistry::parents(behind).front();
  Filler filler(made, behind);
  for (const SetShape& set : shape.sets)
    filler.addSet(set);
  filler.fillUpTo(shape.entries);
  const EntryID port = addEntry(addSwitch(_ownSwitch, made.uid), "IOThunderboltPort", "", "A",
                                {{"Adapter Type", PCIUpAdapter}, {"PCI Device", 3}});
  MemoryRegistry::setProperty(
      port, "PCI Path", MemoryRegistry::path(MemoryRegistry::parents(behindUpstream).front()));
  return made;
}

}  // namespace TestSupport
