#include "application/json/JsonModel.h"

#include "application/Words.h"

namespace Program {
namespace {

Json memberToJson(const MemberSnapshot& member) {
  Json json{{"uuid", member.uuid}, {"state", wordFor(member.state)}, {"path", member.path}};
  if (member.slot) json["slot"] = *member.slot;
  return json;
}

Json membersToJson(const EnclosureSlots& enclosure) {
  Json members = Json::array();
  auto location = enclosure.locations.begin();
  for (const VolumeSnapshot& volume : enclosure.volumes) {
    for (const MemberSnapshot& member : volume.members) {
      members.push_back(Json{{"uuid", member.uuid},
                             {"volume", volume.uuid},
                             {"slot", location->slot},
                             {"inferred", location->inferred}});
      ++location;
    }
  }
  return members;
}

Json baysToJson(const EnclosureSlots& enclosure) {
  Json bays = Json::array();
  int bay = 1;
  for (const int answer : enclosure.answers)
    bays.push_back(Json{{"bay", bay++}, {"answer", answer}});
  return bays;
}

}  // namespace

Json toJson(const DeviceSnapshot& device) {
  return Json{{"uid", hexadecimal(device.uid)}, {"vendor", device.vendor},
              {"vendor_id", device.vendorID},   {"model", device.model},
              {"model_id", device.modelID},     {"status", device.status},
              {"bay_count", device.bayCount},   {"bridge", device.bridge}};
}

Json toJson(const VolumeSnapshot& volume) {
  Json members = Json::array();
  for (const MemberSnapshot& member : volume.members)
    members.push_back(memberToJson(member));
  return Json{{"uuid", volume.uuid},
              {"name", volume.name},
              {"level", wordFor(volume.level)},
              {"state", wordFor(volume.state)},
              {"device", hexadecimal(volume.device)},
              {"members", std::move(members)}};
}

Json toJson(const EnclosureVolumes& enclosure) {
  Json volumes = Json::array();
  for (const VolumeSnapshot& volume : enclosure.volumes)
    volumes.push_back(toJson(volume));
  Json json = toJson(enclosure.device);
  json["volumes"] = std::move(volumes);
  return json;
}

Json toJson(const EnclosureSlots& enclosure) {
  Json json = toJson(enclosure.device);
  json["members"] = membersToJson(enclosure);
  json["bays"] = baysToJson(enclosure);
  return json;
}

Json keptToJson(const HandleAccounts& accounts) {
  Json kept = Json::array();
  for (const HandleAccounts::Entry& entry : accounts.kept) {
    kept.push_back(Json{{"id", hexadecimal(entry.id)}, {"references", entry.references}});
  }
  return kept;
}

}  // namespace Program
