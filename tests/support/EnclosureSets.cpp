#include "tests/support/EnclosureBuilder.h"

namespace TestSupport {

using MemoryRegistry::Array;
using MemoryRegistry::Dictionary;
using MemoryRegistry::number64;

namespace {

Array bootDevices(const std::vector<std::string>& paths) {
  Array devices;
  for (const std::string& path : paths) {
    devices.emplace_back(
        Dictionary{{"IOBootDevicePath", path}, {"IOBootDeviceSize", number64(4000475611136)}});
  }
  return devices;
}

}  // namespace

std::string EnclosureBuilder::memberUUID(int bay) const {
  return "MEMBER-" + std::to_string(_description.tunnel) + "-" + std::to_string(bay);
}

std::string EnclosureBuilder::bootPath(int bay) const {
  return _bays.at(bay).treePath + "/PMP@0/@0:2";
}

EnclosureBuilder& EnclosureBuilder::addMember(int number, const std::string& setUUID,
                                              const std::string& status) {
  Bay& bay = _bays.at(number);
  bay.setUUID = setUUID;
  bay.member = addUnregistered(bay.partition, "AppleRAIDMember",
                               {{"AppleRAID-MemberUUID", memberUUID(number)},
                                {"AppleRAID-MemberStatus", status},
                                {"AppleRAID-SetUUID", setUUID}});
  return *this;
}

EnclosureBuilder& EnclosureBuilder::addSet(const SetDescription& description) {
  Array members;
  std::vector<std::string> paths;
  for (const int bay : description.bays) {
    if (_bays.at(bay).member == 0) addMember(bay, description.uuid);
    members.emplace_back(memberUUID(bay));
    paths.push_back(bootPath(bay));
  }
  // A set is a member by class, and answers to its own UUID as one.
  EntryID& set = _sets[description.uuid];
  set = addEntry(member(description.bays.at(0)), "AppleRAID" + description.level + "Set", "", "",
                 {{"AppleRAID-SetUUID", description.uuid},
                  {"AppleRAID-MemberUUID", description.uuid},
                  {"AppleRAID-MemberStatus", "Online"},
                  {"AppleRAID-SetName", description.name},
                  {"AppleRAID-SetStatus", description.status},
                  {"AppleRAID-LevelName", description.level},
                  {"AppleRAID-Members", members}});
  for (std::size_t i = 1; i < description.bays.size(); ++i) {
    MemoryRegistry::attach(set, member(description.bays[i]));
  }
  const EntryID media =
      addEntry(set, "IOMedia", description.name, "0", {{"IOBootDevice", bootDevices(paths)}});
  addEntry(media, "IOMediaBSDClient");
  return *this;
}

void EnclosureBuilder::removeSet(const std::string& uuid) {
  MemoryRegistry::terminate(_sets.at(uuid));
  _sets.erase(uuid);
}

void EnclosureBuilder::setStatus(const std::string& uuid, const std::string& status) {
  MemoryRegistry::setProperty(_sets.at(uuid), "AppleRAID-SetStatus", status);
}

void EnclosureBuilder::setMemberStatus(int bay, const std::string& status) {
  MemoryRegistry::setProperty(_bays.at(bay).member, "AppleRAID-MemberStatus", status);
}

void EnclosureBuilder::setBootPaths(const std::string& uuid,
                                    const std::vector<std::string>& paths) {
  MemoryRegistry::setProperty(setMedia(uuid), "IOBootDevice", bootDevices(paths));
}

EntryID EnclosureBuilder::setMedia(const std::string& uuid) const {
  return MemoryRegistry::children(_sets.at(uuid)).at(0);
}

}  // namespace TestSupport
