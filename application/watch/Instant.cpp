#include "application/watch/Instant.h"

#include <algorithm>
#include <utility>

namespace Program {
namespace {

bool isDepartureOf(const Cause& cause, std::uint64_t enclosure) {
  const auto* device = std::get_if<DeviceEvent>(&cause.event.what);
  return device != nullptr && device->kind == DeviceEvent::Kind::Disappeared &&
         device->uid == enclosure;
}

// Another state would be another change.
bool reportsAgain(const VolumeEvent& event, const VolumeEvent& earlier) {
  return event.kind == VolumeEvent::Kind::Updated &&
         earlier.kind != VolumeEvent::Kind::Disappeared &&
         event.volume.state == earlier.volume.state;
}

}  // namespace

void Instant::add(const WatchEvent& event) {
  std::visit([this, &event](const auto& what) { add(event.time, what); }, event.what);
}

std::vector<Cause> Instant::take() {
  _leaving.reset();
  return std::exchange(_causes, {});
}

void Instant::add(Pelago::Milliseconds time, const DeviceEvent& event) {
  _leaving.reset();
  if (event.kind == DeviceEvent::Kind::Disappeared) _leaving = _causes.size();
  _causes.push_back({{time, event}, {}});
}

void Instant::add(Pelago::Milliseconds time, const VolumeEvent& event) {
  if (event.kind == VolumeEvent::Kind::Disappeared) {
    if (Cause* departure = departureBehind(event)) {
      departure->lost.push_back(event);
      return;
    }
  } else {
    _leaving.reset();
  }
  if (VolumeEvent* earlier = earlierReport(event)) {
    earlier->volume = event.volume;
    earlier->enclosure = event.enclosure;
    return;
  }
  _causes.push_back({{time, event}, {}});
}

// The volume's last event, told through the same enclosure: another one has other bays.
VolumeEvent* Instant::earlierReport(const VolumeEvent& event) {
  for (auto cause = _causes.rbegin(); cause != _causes.rend(); ++cause) {
    auto* earlier = std::get_if<VolumeEvent>(&cause->event.what);
    if (earlier == nullptr || earlier->volume.uuid != event.volume.uuid) continue;
    if (earlier->enclosure.uid != event.enclosure.uid) continue;
    return reportsAgain(event, *earlier) ? earlier : nullptr;
  }
  return nullptr;
}

Cause* Instant::departureOf(std::uint64_t enclosure) {
  const auto cause = std::find_if(_causes.begin(), _causes.end(), [enclosure](const Cause& other) {
    return isDepartureOf(other, enclosure);
  });
  return cause == _causes.end() ? nullptr : &*cause;
}

// A volume that spans enclosures goes with any of them, whichever it was last told of.
Cause* Instant::departureBehind(const VolumeEvent& lost) {
  if (Cause* departure = departureOf(lost.enclosure.uid)) return departure;
  return _leaving ? &_causes[*_leaving] : nullptr;
}

}  // namespace Program
