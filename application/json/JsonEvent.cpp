#include "application/json/JsonEvent.h"

#include "application/Words.h"
#include "application/json/JsonModel.h"

namespace Program {
namespace {

const char* name(const DeviceEvent& event) {
  return event.kind == DeviceEvent::Kind::Appeared ? "device-appeared" : "device-disappeared";
}

const char* name(const VolumeEvent& event) {
  switch (event.kind) {
    case VolumeEvent::Kind::Appeared:
      return "raid-appeared";
    case VolumeEvent::Kind::Updated:
      return "raid-updated";
    case VolumeEvent::Kind::Disappeared:
      break;
  }
  return "raid-disappeared";
}

const char* name(const LogEvent&) { return "log"; }
const char* name(const HandlesEvent&) { return "handles"; }
const char* name(const DroppedEvent&) { return "dropped"; }

void describe(Json& line, const DeviceEvent& event) {
  line["device"] = Json{{"uid", hexadecimal(event.uid)}};
}

void describe(Json& line, const VolumeEvent& event) { line["volume"] = toJson(event.volume); }

void describe(Json& line, const LogEvent& event) {
  line["level"] = Pelago::nameOf(event.level);
  line["category"] = event.category;
  line["text"] = event.text;
}

void describe(Json& line, const HandlesEvent& event) {
  line["kept"] = keptToJson(event.accounts);
  line["objects"] = event.accounts.objects;
  line["values"] = event.accounts.values;
}

void describe(Json& line, const DroppedEvent& event) { line["count"] = event.count; }

}  // namespace

const char* nameOf(const WatchEvent& event) {
  return std::visit([](const auto& what) { return name(what); }, event.what);
}

std::string jsonOf(const WatchEvent& event) {
  Json line{{"time", event.time}, {"event", nameOf(event)}};
  std::visit([&line](const auto& what) { describe(line, what); }, event.what);
  return written(line);
}

}  // namespace Program
