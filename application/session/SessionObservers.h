#pragma once

#include <vector>

#include "application/session/SessionObserver.h"

namespace Program {

// Passes on what it hears to several observers, in the order in which they were added. They are not
// its own, and outlive the session.
class SessionObservers : public SessionObserver {
 public:
  void add(SessionObserver& observer) { _observers.push_back(&observer); }

  void deviceAppeared(std::uint64_t uid) override;
  void deviceDisappeared(std::uint64_t uid) override;
  void lookFailed() override;
  void logged(Pelago::Logger::Level level, const std::string& category,
              const std::string& text) override;
  void instantEnded(const Session& session) override;

  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;

 private:
  std::vector<SessionObserver*> _observers;
};

}  // namespace Program
