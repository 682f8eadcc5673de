#pragma once

#include <cstdint>

#include "thunderbolt/ThunderboltDevice.h"

namespace TestSupport {

// A device that a test makes and keeps, as a monitor would: with one reference. At the end its
// volumes are settled first: see there.
class HeldDevice {
 public:
  explicit HeldDevice(std::uint64_t uid);
  ~HeldDevice();
  HeldDevice(const HeldDevice&) = delete;
  HeldDevice& operator=(const HeldDevice&) = delete;

  RAIDMonitoring::ThunderboltDevice* get() const { return _device; }
  RAIDMonitoring::ThunderboltDevice* operator->() const { return _device; }
  RAIDMonitoring::ThunderboltDevice& operator*() const { return *_device; }

  // Ends it now.
  void drop();

 private:
  RAIDMonitoring::ThunderboltDevice* _device;
};

// Takes all filed volumes off the host, and ends each of them: a host that ends leaves them behind,
// and a set that hangs under several members has left one reference too many for each look at it.
// Nobody else may hold references on them any more.
void settleVolumes(RAIDMonitoring::RAIDHost& host);

}  // namespace TestSupport
