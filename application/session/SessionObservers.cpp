#include "application/session/SessionObservers.h"

namespace Program {

using RAIDMonitoring::RAIDVolume;

void SessionObservers::deviceAppeared(std::uint64_t uid) {
  for (SessionObserver* observer : _observers)
    observer->deviceAppeared(uid);
}

void SessionObservers::deviceDisappeared(std::uint64_t uid) {
  for (SessionObserver* observer : _observers)
    observer->deviceDisappeared(uid);
}

void SessionObservers::lookFailed() {
  for (SessionObserver* observer : _observers)
    observer->lookFailed();
}

void SessionObservers::logged(Pelago::Logger::Level level, const std::string& category,
                              const std::string& text) {
  for (SessionObserver* observer : _observers)
    observer->logged(level, category, text);
}

void SessionObservers::instantEnded(const Session& session) {
  for (SessionObserver* observer : _observers)
    observer->instantEnded(session);
}

void SessionObservers::RAIDAppeared(RAIDVolume* volume) {
  for (SessionObserver* observer : _observers)
    observer->RAIDAppeared(volume);
}

void SessionObservers::RAIDDisappeared(RAIDVolume* volume) {
  for (SessionObserver* observer : _observers)
    observer->RAIDDisappeared(volume);
}

void SessionObservers::RAIDUpdated(RAIDVolume* volume) {
  for (SessionObserver* observer : _observers)
    observer->RAIDUpdated(volume);
}

}  // namespace Program
