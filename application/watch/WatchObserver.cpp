#include "application/watch/WatchObserver.h"

#include <utility>

#include "application/StandardOutput.h"
#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Application.h"

namespace Program {

using RAIDMonitoring::RAIDVolume;
using VolumeEvent = WatchPrinter::VolumeEvent;

namespace {

Pelago::Milliseconds now() { return Pelago::Application::instance()->now(); }

}  // namespace

void WatchObserver::print(std::string line) {
  _output.writeLine(std::move(line));
  if (_output.failed()) Pelago::Application::instance()->quit();
}

void WatchObserver::deviceAppeared(std::uint64_t uid) {
  print(_printer.deviceAppeared(now(), uid));
}

void WatchObserver::deviceDisappeared(std::uint64_t uid) {
  print(_printer.deviceDisappeared(now(), uid));
}

void WatchObserver::logged(Pelago::Logger::Level level, const std::string& category,
                           const std::string& text) {
  if (_log) print(_printer.logged(now(), {level, category, text}));
}

void WatchObserver::RAIDAppeared(RAIDVolume* volume) {
  printWithSlots(VolumeEvent::Appeared, *volume);
}

void WatchObserver::RAIDUpdated(RAIDVolume* volume) {
  printWithSlots(VolumeEvent::Updated, *volume);
}

void WatchObserver::printWithSlots(VolumeEvent event, const RAIDVolume& volume) {
  const VolumeSnapshot snapshot = volumeWithSlots(volume);
  DeviceSnapshot& device = _lastDevices[snapshot.uuid];
  device = deviceOf(*volume.host());
  print(_printer.volumeChanged(now(), event, snapshot, device));
}

void WatchObserver::RAIDDisappeared(RAIDVolume* volume) {
  const DeviceSnapshot& device = _lastDevices[volume->uuid()];
  print(_printer.volumeChanged(now(), VolumeEvent::Disappeared,
                               volumeWithoutSlots(*volume, device.uid), device));
}

}  // namespace Program
