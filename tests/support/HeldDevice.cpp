#include "tests/support/HeldDevice.h"

#include <utility>

#include "model/RAIDVolume.h"

namespace TestSupport {

void settleVolumes(RAIDMonitoring::RAIDHost& host) {
  for (auto* volume : host.raidVolumes()) {
    while (volume->references() > 1)
      volume->deref();
    host.removeRAIDVolume(volume);
  }
}

HeldDevice::HeldDevice(std::uint64_t uid) : _device(new RAIDMonitoring::ThunderboltDevice(uid)) {
  _device->ref();
}

HeldDevice::~HeldDevice() { drop(); }

void HeldDevice::drop() {
  auto* device = std::exchange(_device, nullptr);
  if (device == nullptr) return;
  settleVolumes(*device);
  device->deref();
}

}  // namespace TestSupport
