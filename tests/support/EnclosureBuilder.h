#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/support/HostTree.h"

namespace TestSupport {

// What an enclosure says of itself, and how it is built inside.
struct EnclosureDescription {
  std::uint64_t uid = 0;
  std::uint64_t vendorID = 3;
  std::string vendorName = "Example Storage";
  std::uint64_t modelID = 2;
  std::string modelName = "Two Bay";
  // One controller of two ports; or three bridges at 5, 7 and 9 with one such controller each.
  bool threeBridges = false;
  unsigned tunnel = 0;  // of the host; two enclosures need two
  std::string controller = "pci1b0a,10";
};
EnclosureDescription twoBay(std::uint64_t uid, unsigned tunnel = 0);
EnclosureDescription fiveBay(std::uint64_t uid, unsigned tunnel = 0);

struct SetDescription {
  std::string uuid;
  std::vector<int> bays;  // in the order in which their members arrive
  std::string name = "Projects";
  std::string level = "Mirror";  // decides the class, too
  std::string status = "Online";
};

// One enclosure in the registry, staged as it fills in after being plugged in: switch, PCI path,
// upstream bridge, inner bridges with controllers and ports, disks, sets. Bays count from 1, as
// slots do. Each stage needs those before it; complete() makes up for all that are missing, disks
// left out.
class EnclosureBuilder {
 public:
  EnclosureBuilder(const HostTree& host, EnclosureDescription description);

  // ---- Stages (EnclosureBuilder.cpp)
  EnclosureBuilder& addSwitch();  // with its ports; the upstream one lacks its PCI properties
  EnclosureBuilder& addPCIPath(int pciDevice = 3);
  EnclosureBuilder& addUpstreamBridge();
  EnclosureBuilder& addBridges();
  EnclosureBuilder& complete();
  // Everything of the enclosure leaves the registry at once.
  void unplug();

  EntryID switchEntry() const { return _switch; }
  EntryID upstreamPort() const { return _upstreamPort; }
  EntryID upstreamBridge() const { return _upstreamBridge; }
  EntryID bridge() const { return _bridge; }  // beneath which everything is; the device's own
  EntryID innerBridge(int location) const { return _innerBridges.at(location); }
  EntryID port(int bay) const { return _bays.at(bay).port; }
  // The path at which the bridge is or will be.
  std::string bridgePath() const;
  std::uint64_t uid() const { return _description.uid; }

  // ---- Disks (EnclosureDisks.cpp)
  EnclosureBuilder& addDisk(int bay);  // with partitions, all with their BSD clients
  EnclosureBuilder& addDisks(const std::vector<int>& bays);
  // The disk and all above it that nothing else holds leave the registry.
  void pullDisk(int bay);
  // A disk with new entries; its member comes back with its old UUIDs and, if the set is still
  // there, is attached to it last.
  void returnDisk(int bay, const std::string& memberStatus = "Online");

  EntryID disk(int bay) const { return _bays.at(bay).disk; }  // the IOAHCIDevice
  EntryID wholeMedia(int bay) const { return _bays.at(bay).media; }
  EntryID partition(int bay) const { return _bays.at(bay).partition; }  // the one for RAID

  // ---- Sets (EnclosureSets.cpp)
  EnclosureBuilder& addMember(int bay, const std::string& setUUID,
                              const std::string& status = "Online");
  // Members for all bays, where missing, and the set beneath each of them, with its media.
  EnclosureBuilder& addSet(const SetDescription& description);
  void removeSet(const std::string& uuid);
  void setStatus(const std::string& uuid, const std::string& status);
  void setMemberStatus(int bay, const std::string& status);
  // The boot devices of the set's media, by their paths.
  void setBootPaths(const std::string& uuid, const std::vector<std::string>& paths);

  EntryID member(int bay) const { return _bays.at(bay).member; }
  std::string memberUUID(int bay) const;  // ascending with the bay
  // Where the device tree has the disk's partition.
  std::string bootPath(int bay) const;
  EntryID set(const std::string& uuid) const { return _sets.at(uuid); }
  EntryID setMedia(const std::string& uuid) const;

 private:
  struct Bay {
    EntryID port = 0;
    EntryID disk = 0;
    EntryID media = 0;
    EntryID partition = 0;
    EntryID member = 0;
    std::string treePath;  // of the port, in the device tree
    std::string setUUID;
  };

  void addController(EntryID parent, const std::string& treePath, int firstBay);
  void addPartitions(EntryID wholeMedia, Bay& bay, int number);

  HostTree _host;
  EnclosureDescription _description;
  EntryID _lanePort = 0;
  EntryID _switch = 0;
  EntryID _upstreamPort = 0;
  EntryID _upstreamBridge = 0;
  EntryID _bridge = 0;
  std::map<int, EntryID> _innerBridges;
  std::map<int, Bay> _bays;
  std::map<std::string, EntryID> _sets;
};

}  // namespace TestSupport
