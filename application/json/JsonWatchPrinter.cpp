#include "application/json/JsonWatchPrinter.h"

#include "application/Words.h"
#include "application/json/JsonModel.h"

namespace Program {
namespace {

Json eventAt(WatchPrinter::Moment time, const char* event) {
  return Json{{"time", time}, {"event", event}};
}

std::string deviceLine(WatchPrinter::Moment time, const char* event, std::uint64_t uid) {
  Json line = eventAt(time, event);
  line["device"] = Json{{"uid", hexadecimal(uid)}};
  return written(line);
}

const char* nameOf(WatchPrinter::VolumeEvent event) {
  switch (event) {
    case WatchPrinter::VolumeEvent::Appeared:
      return "raid-appeared";
    case WatchPrinter::VolumeEvent::Updated:
      return "raid-updated";
    case WatchPrinter::VolumeEvent::Disappeared:
      break;
  }
  return "raid-disappeared";
}

}  // namespace

std::string JsonWatchPrinter::deviceAppeared(Moment time, std::uint64_t uid) {
  return deviceLine(time, "device-appeared", uid);
}

std::string JsonWatchPrinter::deviceDisappeared(Moment time, std::uint64_t uid) {
  return deviceLine(time, "device-disappeared", uid);
}

std::string JsonWatchPrinter::volumeChanged(Moment time, VolumeEvent event,
                                            const VolumeSnapshot& volume, const DeviceSnapshot&) {
  Json line = eventAt(time, nameOf(event));
  line["volume"] = toJson(volume);
  return written(line);
}

std::string JsonWatchPrinter::logged(Moment time, const LogLine& log) {
  Json line = eventAt(time, "log");
  line["level"] = Pelago::nameOf(log.level);
  line["category"] = log.category;
  line["text"] = log.text;
  return written(line);
}

std::string JsonWatchPrinter::handles(Moment time, const HandleAccounts& accounts) {
  Json line = eventAt(time, "handles");
  line["kept"] = keptToJson(accounts);
  line["objects"] = accounts.objects;
  line["values"] = accounts.values;
  return written(line);
}

}  // namespace Program
