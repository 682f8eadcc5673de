#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "model/RAIDHost.h"

namespace MonitorTest {

// A host that stands for the device with its identifier, and whose refresh is what a test says.
class ScriptedHost : public RAIDMonitoring::RAIDHost {
 public:
  using Script = std::function<void()>;

  explicit ScriptedHost(std::uint64_t id) : _id(id) {}
  ~ScriptedHost() override {
    if (_onEnd) _onEnd();
  }

  bool matchesDevice(const Pelago::Device& device) override {
    if (_onMatch) _onMatch();
    return device.id == _id;
  }
  void refresh() override {
    if (_onRefresh) _onRefresh();
  }

  std::uint64_t id() const { return _id; }
  void onRefresh(Script script) { _onRefresh = std::move(script); }
  void onMatch(Script script) { _onMatch = std::move(script); }
  void onEnd(Script script) { _onEnd = std::move(script); }

 private:
  std::uint64_t _id;
  Script _onRefresh;
  Script _onMatch;
  Script _onEnd;
};

}  // namespace MonitorTest
