#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/RAIDVolume.h"
#include "platform/pelago/Reference.h"
#include "platform/registry/RegistryReferences.h"
#include "tests/support/EnclosureBuilder.h"
#include "tests/support/HeldDevice.h"
#include "tests/support/RegistryFixture.h"

namespace ModelTest {

using MemoryRegistry::EntryID;
using VolumeReference = Pelago::Reference<RAIDMonitoring::RAIDVolume>;

// A set as it is to stand in the registry.
struct SetText {
  std::string uuid;
  std::vector<std::string> members;
  std::string status = "Online";
  std::string level = "Mirror";
  std::string name = "Projects";
};

// A two-bay enclosure without disks, and its device, which knows its bridge and has found nothing
// beneath it. The log begins empty, and what the bring-up has kept is declared.
class ModelFixture : public TestSupport::RegistryFixture {
 protected:
  static constexpr std::uint64_t UID = 0x00C0FFEE00000001;

  ModelFixture();

  TestSupport::HostTree& tree() { return _tree; }
  TestSupport::EnclosureBuilder& enclosure() { return _enclosure; }
  RAIDMonitoring::ThunderboltDevice* device() { return _device->get(); }
  EntryID bridge() const { return _bridge; }
  // A place in the registry that is not beneath the bridge.
  EntryID elsewhere() const { return _tree.tunnel(1); }

  // So many more references on the bridge are kept at the end.
  void expectLookUps(std::uint64_t count) { expectKept(_bridge, count); }

  // How many references on the bridge the action leaves behind, which are declared.
  std::uint64_t keptBy(const std::function<void()>& action);

  // A new volume on the device, with one reference.
  VolumeReference makeVolume(const std::string& uuid);

 private:
  TestSupport::HostTree _tree;
  TestSupport::EnclosureBuilder _enclosure;
  EntryID _bridge;
  std::unique_ptr<TestSupport::HeldDevice> _device;
};

EntryID addMember(EntryID parent, const std::string& uuid, const std::string& status = "Online");
EntryID addSet(EntryID parent, const SetText& text);
void setMembers(EntryID set, const std::vector<std::string>& uuids);

// A handle on the entry for the time of a call.
RAIDMonitoring::RegistryHandle handleOn(EntryID entry);

// The UUIDs of members, in the order given.
template <class Members>
std::vector<std::string> uuidsOf(const Members& members) {
  std::vector<std::string> uuids;
  for (const auto* member : members)
    uuids.push_back(member->uuid());
  return uuids;
}

}  // namespace ModelTest
