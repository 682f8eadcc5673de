#pragma once

#include <functional>
#include <utility>

#include "monitor/RAIDMonitor.h"
#include "platform/pelago/Device.h"

namespace MonitorTest {

// A monitor whose hosts a test makes.
class ScriptedMonitor : public RAIDMonitoring::RAIDMonitor {
 public:
  using Factory = std::function<RAIDMonitoring::RAIDHost*(const Pelago::Device& device)>;

  RAIDMonitoring::RAIDHost* RAIDHostFromDevice(const Pelago::Device& device) override {
    return _factory ? _factory(device) : nullptr;
  }
  void makeHosts(Factory factory) { _factory = std::move(factory); }

 private:
  Factory _factory;
};

}  // namespace MonitorTest
