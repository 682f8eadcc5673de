#pragma once

#include <string>
#include <vector>

#include "tests/monitor/Scene.h"
#include "tests/support/RegistryFixture.h"

namespace MonitorTest {

using Story = std::vector<std::string>;

// One scene. A volume that is made on a scripted host looks for its set, in vain, and says so; the
// log is about what comes after.
class MonitorFixture : public TestSupport::RegistryFixture {
 protected:
  Scene scene;
};

}  // namespace MonitorTest
