#include "model/RAIDVolume.h"

#include <set>
#include <string_view>
#include <utility>

#include "model/AppleRAIDMember.h"
#include "model/AscendingStorage.h"
#include "model/RAIDHost.h"
#include "platform/pelago/Logger.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace RAIDMonitoring {

using Pelago::Logger;

namespace {

AscendingStorage<RAIDVolume, 4096> storage;

}  // namespace

RAIDVolume::RAIDVolume(RAIDHost* host, std::string uuid) : _uuid(std::move(uuid)), _host(host) {
  try {
    refresh();
  } catch (...) {
    removeAllMembers();  // no destructor runs for an object that was never finished
    throw;
  }
}

RAIDVolume::~RAIDVolume() { removeAllMembers(); }

void* RAIDVolume::operator new(std::size_t size) { return storage.allocate(size); }

void RAIDVolume::operator delete(void* memory) noexcept { storage.release(memory); }

void RAIDVolume::removeAllMembers() {
  while (!_membersByUUID.empty())
    removeRAIDMember(_membersByUUID.rbegin()->second);
}

std::vector<RAIDMember*> RAIDVolume::members() const {
  std::vector<RAIDMember*> members;
  members.reserve(_membersByUUID.size());
  for (const auto& [uuid, member] : _membersByUUID)
    members.push_back(member);
  return members;
}

void RAIDVolume::addRAIDMember(RAIDMember* member) {
  if (_membersByUUID.emplace(member->uuid(), member).second) member->ref();
}

void RAIDVolume::removeRAIDMember(RAIDMember* member) {
  if (_membersByUUID.erase(member->uuid()) != 0) member->deref();
}

std::string RAIDVolume::UUIDFromEntry(io_registry_entry_t entry) {
  return IOKitUtilities::GetServiceStringProperty(entry, kRAIDSetUUIDKey);
}

io_registry_entry_t RAIDVolume::entryFromUUID() const {
  // Kept on purpose: each look-up leaves one reference on the bridge.
  const io_registry_entry_t bridge =
      IORegistryEntryFromPath(registryPort, _host->pciBridgePath().c_str());
  if (bridge == 0) {
    // The texts name "EntryFromUUID", with a capital E: readers of the log match on them.
    Logger::Message("RAIDMonitor",
                    "RAIDVolume::EntryFromUUID - Cannot find back the PCI Bridge object");
    return 0;
  }
  RegistryHandle iterator;
  if (IORegistryEntryCreateIterator(bridge, kServicePlane, kIORegistryIterateRecursively,
                                    iterator.receive()) != kIOReturnSuccess ||
      !iterator) {
    Logger::Message("RAIDMonitor",
                    "RAIDVolume::EntryFromUUID - couldn't create iterator on PCI Bridge");
    return 0;
  }
  while (auto entry = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
    if (IOObjectConformsTo(entry.get(), kRAIDSetClass) && UUIDFromEntry(entry.get()) == _uuid) {
      return entry.release();
    }
  }
  return 0;
}

void RAIDVolume::readProperties(io_registry_entry_t entry) {
  _uuid = UUIDFromEntry(entry);
  readDescription(entry);
}

void RAIDVolume::readDescription(io_registry_entry_t entry) {
  _name = IOKitUtilities::GetServiceStringProperty(entry, kRAIDSetNameKey);
  readVolumeState(IOKitUtilities::GetServiceStringProperty(entry, kRAIDSetStatusKey), _state);
  readRAIDLevel(IOKitUtilities::GetServiceStringProperty(entry, kRAIDLevelNameKey), _level);
}

// A member path shorter than the bridge's counts as outside; an empty bridge path holds everything.
bool RAIDVolume::liesOutsideBridge(const AppleRAIDMember& member) const {
  const std::string& bridge = _host->pciBridgePath();
  return member.registryPath().compare(0, bridge.size(), bridge) != 0;
}

Pelago::Reference<RAIDMember> RAIDVolume::findMember(const std::string& uuid) {
  const auto filed = _membersByUUID.find(uuid);
  if (filed != _membersByUUID.end()) {
    filed->second->refresh();
    return Pelago::Reference<RAIDMember>(filed->second);
  }
  auto* member = new AppleRAIDMember(this, uuid);
  Pelago::Reference<RAIDMember> held(member);
  // Only a member that is new here and present is tested: the mark lasts until the next status that
  // is read, and comes back only with another new member.
  if (member->state() >= 0 && liesOutsideBridge(*member)) _state = VolumeCrossDevice;
  return held;
}

std::vector<Pelago::Reference<RAIDMember>> RAIDVolume::holdMembers(io_registry_entry_t entry) {
  const auto listed = CFReference<CFTypeRef>::adopt(
      IORegistryEntryCreateCFProperty(entry, CFSTR(kRAIDMembersKey), kCFAllocatorDefault, 0));
  if (!listed || CFGetTypeID(listed.get()) != CFArrayGetTypeID()) {
    Logger::Message("RAIDMonitor", "RAIDVolume::findMembers - cannot get set members");
    return {};
  }
  const auto uuids = static_cast<CFArrayRef>(listed.get());
  const CFIndex count = CFArrayGetCount(uuids);
  std::vector<Pelago::Reference<RAIDMember>> members;
  members.reserve(static_cast<std::size_t>(count));
  for (CFIndex index = 0; index < count; ++index) {
    const auto element = static_cast<CFStringRef>(CFArrayGetValueAtIndex(uuids, index));
    members.push_back(findMember(IOKitUtilities::GetStringFromCFString(element)));
  }
  return members;
}

std::vector<RAIDMember*> RAIDVolume::findMembers(io_registry_entry_t entry) {
  auto held = holdMembers(entry);
  std::vector<RAIDMember*> members;
  members.reserve(held.size());
  for (auto& member : held)
    members.push_back(member.release());
  return members;
}

// Files the members that are new, and removes those that are no longer listed.
void RAIDVolume::reconcile(std::vector<Pelago::Reference<RAIDMember>> found) {
  std::set<std::string_view> seen;  // keys of the map below: they last longer than a spare member
  for (auto& member : found) {
    addRAIDMember(member.get());
    seen.insert(_membersByUUID.find(member->uuid())->first);
    member.reset();
  }
  std::vector<RAIDMember*> gone;
  for (const auto& [uuid, member] : _membersByUUID) {
    if (seen.count(uuid) == 0) gone.push_back(member);
  }
  for (RAIDMember* member : gone)
    removeRAIDMember(member);
}

void RAIDVolume::refresh() {
  auto entry = RegistryHandle::adopt(entryFromUUID());
  if (!entry) {
    Logger::Message("RAIDMonitor",
                    "RAIDVolume::refresh - Couldn't find the RAID Set entry for UUID '%s'",
                    _uuid.c_str());
    _state = VolumeFailed;
    return;
  }
  // Read with the other properties, and not stored: the set was found by its UUID. If it leaves
  // meanwhile, nothing is read; without its UUID the volume would be filed, announced and withdrawn
  // as another.
  static_cast<void>(UUIDFromEntry(entry.get()));
  readDescription(entry.get());
  auto found = holdMembers(entry.get());
  entry.reset();
  reconcile(std::move(found));
}

}  // namespace RAIDMonitoring
