#include "model/RAIDHost.h"
#include "thunderbolt/ThunderboltDevice.h"

// The questions that the model asks of a host and only this layer can answer.
// Asked during a device's own construction too: the object is a ThunderboltDevice by then.

namespace RAIDMonitoring {

const std::string& RAIDHost::pciBridgePath() const {
  static const std::string none;
  const auto* device = dynamic_cast<const ThunderboltDevice*>(this);
  return device != nullptr ? device->_pciBridgePath : none;
}

std::uint64_t RAIDHost::deviceID() const {
  const auto* device = dynamic_cast<const ThunderboltDevice*>(this);
  return device != nullptr ? device->_uid : 0;
}

}  // namespace RAIDMonitoring
