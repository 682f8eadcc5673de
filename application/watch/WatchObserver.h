#pragma once

#include <map>
#include <string>

#include "application/session/SessionObserver.h"
#include "application/session/Snapshot.h"
#include "application/watch/WatchPrinter.h"

namespace Program {

class StandardOutput;

// Prints a line for everything that it hears, and ends the event loop when the output fails.
class WatchObserver : public SessionObserver {
 public:
  WatchObserver(WatchPrinter& printer, StandardOutput& output, bool log)
      : _printer(printer), _output(output), _log(log) {}

  void deviceAppeared(std::uint64_t uid) override;
  void deviceDisappeared(std::uint64_t uid) override;
  void logged(Pelago::Logger::Level level, const std::string& category,
              const std::string& text) override;

  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;

 private:
  void print(std::string line);
  void printWithSlots(WatchPrinter::VolumeEvent event, const RAIDMonitoring::RAIDVolume& volume);

  WatchPrinter& _printer;
  StandardOutput& _output;
  bool _log;
  std::map<std::string, DeviceSnapshot> _lastDevices;  // by UUID: a volume may outlive its host
};

}  // namespace Program
