#pragma once

#include <map>
#include <string>
#include <vector>

#include "application/session/SessionObserver.h"
#include "application/watch/WatchEvent.h"

namespace Program {

class WatchListener;

// Makes an event of everything that it hears, and tells it to its listeners. The bays of a volume's
// disks are asked for once, however many listeners there are.
//
// Ownership: the listeners are the caller's, and outlive the session.
class WatchObserver : public SessionObserver {
 public:
  // `log`: lines of the log are events too.
  explicit WatchObserver(bool log) : _log(log) {}

  void add(WatchListener& listener) { _listeners.push_back(&listener); }

  void tell(const WatchEvent& event) const;

  void deviceAppeared(std::uint64_t uid) override;
  void deviceDisappeared(std::uint64_t uid) override;
  void logged(Pelago::Logger::Level level, const std::string& category,
              const std::string& text) override;
  void instantEnded(const Session& session) override;

  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;

 private:
  void tellWithSlots(VolumeEvent::Kind kind, const RAIDMonitoring::RAIDVolume& volume);

  bool _log;
  std::vector<WatchListener*> _listeners;
  std::map<std::string, DeviceSnapshot> _lastDevices;  // by UUID: a volume may outlive its host
};

}  // namespace Program
