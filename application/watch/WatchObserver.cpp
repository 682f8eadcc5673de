#include "application/watch/WatchObserver.h"

#include "application/watch/WatchListener.h"
#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Application.h"

namespace Program {

using RAIDMonitoring::RAIDVolume;

namespace {

Pelago::Milliseconds now() { return Pelago::Application::instance()->now(); }

}  // namespace

void WatchObserver::tell(const WatchEvent& event) const {
  for (WatchListener* listener : _listeners)
    listener->heard(event);
}

void WatchObserver::deviceAppeared(std::uint64_t uid) {
  tell({now(), DeviceEvent{DeviceEvent::Kind::Appeared, uid}});
}

void WatchObserver::deviceDisappeared(std::uint64_t uid) {
  tell({now(), DeviceEvent{DeviceEvent::Kind::Disappeared, uid}});
}

void WatchObserver::logged(Pelago::Logger::Level level, const std::string& category,
                           const std::string& text) {
  if (_log) tell({now(), LogEvent{level, category, text}});
}

void WatchObserver::instantEnded(const Session& session) {
  const Overview overview = overviewOf(session);
  for (WatchListener* listener : _listeners)
    listener->instantEnded(overview);
}

void WatchObserver::RAIDAppeared(RAIDVolume* volume) {
  tellWithSlots(VolumeEvent::Kind::Appeared, *volume);
}

void WatchObserver::RAIDUpdated(RAIDVolume* volume) {
  tellWithSlots(VolumeEvent::Kind::Updated, *volume);
}

void WatchObserver::tellWithSlots(VolumeEvent::Kind kind, const RAIDVolume& volume) {
  const VolumeSnapshot snapshot = volumeWithSlots(volume);
  DeviceSnapshot& device = _lastDevices[snapshot.uuid];
  device = deviceOf(*volume.host());
  tell({now(), VolumeEvent{kind, snapshot, device}});
}

void WatchObserver::RAIDDisappeared(RAIDVolume* volume) {
  const DeviceSnapshot& device = _lastDevices[volume->uuid()];
  tell({now(), VolumeEvent{VolumeEvent::Kind::Disappeared, volumeWithoutSlots(*volume, device.uid),
                           device}});
}

}  // namespace Program
