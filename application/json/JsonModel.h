#pragma once

#include "application/json/Json.h"
#include "application/session/Snapshot.h"
#include "application/session/Source.h"

namespace Program {

// The parts of which all JSON output is made.
Json toJson(const DeviceSnapshot& device);
// A member has the key "slot" when it was asked for.
Json toJson(const VolumeSnapshot& volume);
Json toJson(const EnclosureVolumes& enclosure);
Json toJson(const EnclosureSlots& enclosure);
Json keptToJson(const HandleAccounts& accounts);

// {"devices": [...]}
template <class Enclosure>
Json listing(const std::vector<Enclosure>& enclosures) {
  Json devices = Json::array();
  for (const Enclosure& enclosure : enclosures)
    devices.push_back(toJson(enclosure));
  return Json{{"devices", std::move(devices)}};
}

}  // namespace Program
