#pragma once

#include "model/RAIDHost.h"

namespace ModelTest {

// A host of no kind that the system knows: it stands for no device, re-reads nothing, and has no
// bridge.
class BareHost : public RAIDMonitoring::RAIDHost {
 public:
  bool matchesDevice(const Pelago::Device& /*device*/) override { return false; }
  void refresh() override {}
};

}  // namespace ModelTest
