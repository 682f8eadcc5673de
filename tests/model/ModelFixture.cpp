#include "tests/model/ModelFixture.h"

#include <utility>

namespace ModelTest {

using TestSupport::addEntry;
using TestSupport::addUnregistered;

ModelFixture::ModelFixture()
    : _enclosure(_tree, TestSupport::twoBay(UID)),
      _bridge(_enclosure.complete().bridge()),
      _device(std::make_unique<TestSupport::HeldDevice>(UID)) {
  expectKept(_bridge, MemoryRegistry::references(_bridge));
  log().clear();
}

std::uint64_t ModelFixture::keptBy(const std::function<void()>& action) {
  const std::uint64_t before = MemoryRegistry::references(_bridge);
  action();
  const std::uint64_t kept = MemoryRegistry::references(_bridge) - before;
  expectLookUps(kept);
  return kept;
}

VolumeReference ModelFixture::makeVolume(const std::string& uuid) {
  return VolumeReference(new RAIDMonitoring::RAIDVolume(device(), uuid));
}

EntryID addMember(EntryID parent, const std::string& uuid, const std::string& status) {
  return addUnregistered(parent, "AppleRAIDMember",
                         {{"AppleRAID-MemberUUID", uuid}, {"AppleRAID-MemberStatus", status}});
}

EntryID addSet(EntryID parent, const SetText& text) {
  const EntryID set = addEntry(parent, "AppleRAID" + text.level + "Set", "", "",
                               {{"AppleRAID-SetUUID", text.uuid},
                                {"AppleRAID-MemberUUID", text.uuid},
                                {"AppleRAID-SetName", text.name},
                                {"AppleRAID-SetStatus", text.status},
                                {"AppleRAID-LevelName", text.level}});
  setMembers(set, text.members);
  return set;
}

void setMembers(EntryID set, const std::vector<std::string>& uuids) {
  MemoryRegistry::Array array(uuids.begin(), uuids.end());
  MemoryRegistry::setProperty(set, "AppleRAID-Members", std::move(array));
}

RAIDMonitoring::RegistryHandle handleOn(EntryID entry) {
  return RAIDMonitoring::RegistryHandle::adopt(MemoryRegistry::handle(entry));
}

}  // namespace ModelTest
