#pragma once

#include <cstdint>
#include <string>

#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Logger.h"

namespace Program {

class Session;

// What a command hears from its session, besides what any client of the monitor hears. The base
// versions do nothing: a command that only wants the state at the end passes one of these.
class SessionObserver : public RAIDMonitoring::RAIDMonitorClient {
 public:
  // Before the monitor hears of the device.
  virtual void deviceAppeared(std::uint64_t) {}
  virtual void deviceDisappeared(std::uint64_t) {}

  // Discovery could not look at the registry.
  virtual void lookFailed() {}

  virtual void logged(Pelago::Logger::Level, const std::string& /*category*/,
                      const std::string& /*text*/) {}

  // Everything that was due at this moment has happened: the process is about to wait, or the run
  // is over. It may be called again when nothing has happened since.
  virtual void instantEnded(const Session&) {}

  void RAIDAppeared(RAIDMonitoring::RAIDVolume*) override {}
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume*) override {}
  void RAIDUpdated(RAIDMonitoring::RAIDVolume*) override {}
};

}  // namespace Program
