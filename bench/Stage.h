#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "monitor/RAIDMonitor.h"
#include "platform/pelago/Application.h"
#include "platform/pelago/VirtualClock.h"
#include "tests/operations/GeneratedRegistry.h"

namespace Bench {

// A fresh registry with so many enclosures of one shape, and a monitor that has announced their
// sets. There can be one at a time.
class Stage {
 public:
  Stage(std::size_t devices, const TestSupport::EnclosureShape& shape);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Tells the monitor of all devices; their sets are announced with that.
  void plugIn();
  void unplug();

  Pelago::Application& application() { return _application; }
  RAIDMonitoring::RAIDMonitor& monitor() { return *_monitor; }
  const std::vector<TestSupport::GeneratedEnclosure>& enclosures() const { return _enclosures; }

 private:
  Pelago::VirtualClock _clock;
  Pelago::Application _application;
  std::vector<TestSupport::GeneratedEnclosure> _enclosures;
  RAIDMonitoring::RAIDMonitor* _monitor;
};

// Walks beneath the entry through the seam as a search of the library does, and returns how many
// sets were met.
std::size_t setsThroughSeam(unsigned int entry, std::size_t& steps);

}  // namespace Bench
