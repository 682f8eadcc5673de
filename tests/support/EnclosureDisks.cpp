#include "tests/support/EnclosureBuilder.h"

namespace TestSupport {

namespace {

EntryID addMedia(EntryID parent, const std::string& name, const std::string& location) {
  const EntryID media = addEntry(parent, "IOMedia", name, location);
  addEntry(media, "IOMediaBSDClient");
  return media;
}

}  // namespace

EnclosureBuilder& EnclosureBuilder::addDisk(int number) {
  Bay& bay = _bays.at(number);
  bay.disk = addEntry(bay.port, "IOAHCIDevice", "", "0");
  const EntryID driver = addEntry(bay.disk, "AppleAHCIDiskDriver");
  const EntryID device = addEntry(driver, "IOAHCIBlockStorageDevice");
  const EntryID block = addEntry(device, "IOBlockStorageDriver");
  bay.media = addMedia(block, "EX4000A " + std::to_string(number) + " Media", "");
  const EntryID scheme = addUnregistered(bay.media, "IOGUIDPartitionScheme");
  addMedia(scheme, "EFI System Partition", "1");
  bay.partition = addMedia(scheme, "Untitled 2", "2");
  addMedia(scheme, "Booter", "3");
  bay.member = 0;
  return *this;
}

EnclosureBuilder& EnclosureBuilder::addDisks(const std::vector<int>& bays) {
  for (const int bay : bays)
    addDisk(bay);
  return *this;
}

void EnclosureBuilder::pullDisk(int number) {
  Bay& bay = _bays.at(number);
  MemoryRegistry::terminate(bay.disk);
  bay.disk = bay.media = bay.partition = bay.member = 0;
}

void EnclosureBuilder::returnDisk(int number, const std::string& memberStatus) {
  addDisk(number);
  const Bay& bay = _bays.at(number);
  if (bay.setUUID.empty()) return;
  addMember(number, bay.setUUID, memberStatus);
  const auto set = _sets.find(bay.setUUID);
  if (set != _sets.end() && MemoryRegistry::contains(set->second)) {
    MemoryRegistry::attach(set->second, bay.member);
  }
}

}  // namespace TestSupport
