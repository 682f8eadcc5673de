#include "tests/thunderbolt/DeviceTest.h"

#include <set>
#include <stdexcept>

#include "model/RAIDMember.h"
#include "model/RAIDVolume.h"

namespace RAIDMonitoring {

using TestSupport::addEntry;
using TestSupport::addUnregistered;

EntryID DeviceTest::addBareMember(EntryID parent, const std::string& uuid) {
  return addUnregistered(parent, "AppleRAIDMember",
                         {{"AppleRAID-MemberUUID", uuid}, {"AppleRAID-MemberStatus", "Online"}});
}

EntryID DeviceTest::addBareSet(EntryID parent, const std::string& uuid,
                               const std::vector<std::string>& memberUUIDs,
                               const std::string& level) {
  MemoryRegistry::Array members(memberUUIDs.begin(), memberUUIDs.end());
  return addEntry(parent, "AppleRAID" + level + "Set", "", "",
                  {{"AppleRAID-SetUUID", uuid},
                   {"AppleRAID-SetName", "Bare"},
                   {"AppleRAID-SetStatus", "Online"},
                   {"AppleRAID-LevelName", level},
                   {"AppleRAID-Members", members}});
}

RAIDMember* DeviceTest::memberOf(const HeldDevice& device, const std::string& uuid) {
  for (RAIDVolume* volume : device->raidVolumes()) {
    for (RAIDMember* member : volume->members()) {
      if (member->uuid() == uuid) return member;
    }
  }
  throw std::logic_error("no member " + uuid);
}

LogLine lookingForPort() {
  return debug("ThunderboltDevice - Trying to find upstream port for device '00030712abcd0042'");
}

LogLine waitingForPCIPath() {
  return debug(
      "ThunderboltDevice::waitForUpstreamPort - PCI Path is not available yet. Waiting...");
}

LogLine lookingForBridge() {
  return debug("ThunderboltDevice - Trying to find PCI Bridge for device '00030712abcd0042'");
}

LogLine bridgeFound(const std::string& path) {
  return debug("The _pciBridgePath  path is  " + path, "Thunderbolt device");
}

LogLine lookingForDisks() { return message("ThunderboltDevice::waitForDisks"); }

std::uint64_t keptAtFirstSight(std::uint64_t parents) { return parents; }

std::uint64_t keptAtLaterSight(std::uint64_t parents, std::uint64_t members) {
  return parents * (1 + members);
}

namespace {

void walk(EntryID entry, std::set<EntryID>& entered, std::vector<EntryID>& found) {
  for (const EntryID child : MemoryRegistry::children(entry)) {
    found.push_back(child);
    if (entered.insert(child).second) walk(child, entered, found);
  }
}

}  // namespace

std::vector<EntryID> encountersBeneath(EntryID entry) {
  std::set<EntryID> entered;
  std::vector<EntryID> found;
  walk(entry, entered, found);
  return found;
}

}  // namespace RAIDMonitoring
