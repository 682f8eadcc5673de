#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "application/session/Discovery.h"
#include "application/session/DueClock.h"
#include "application/session/Source.h"
#include "platform/pelago/Application.h"
#include "platform/pelago/DiscoveryManager.h"

namespace RAIDMonitoring {
class RAIDHost;
class RAIDMonitor;
}  // namespace RAIDMonitoring

namespace Program {

class SessionObserver;

// One run of the monitor on a registry: the event loop, discovery, the monitor, and the order of
// what happens at one moment: content, discovery, events, timer.
//
// Ownership: source and observer are the caller's and outlive the session. The log is the session's
//            as long as it lives. At its end the monitor is shut down; the observer hears nothing
//            of that.
// Thread:    the caller's, which is the event thread. One session at a time.
class Session {
 public:
  // `end`: nothing due later happens. None: the session runs until it is told to quit.
  Session(Source& source, SessionObserver& observer, std::optional<Pelago::Milliseconds> end);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Returns at the end, or after Application::quit().
  void run();

  // The moment of the last thing that was due.
  Pelago::Milliseconds lastDue() const { return _clock.lastDue(); }

  // Every host that the monitor holds, ascending by the device's UID.
  std::vector<RAIDMonitoring::RAIDHost*> hosts() const;

 private:
  void runToTheEnd();
  bool runLooks();
  bool endInstant();

  Source& _source;
  SessionObserver& _observer;
  Pelago::Milliseconds _end;
  DueClock _clock;
  Pelago::Application _application;
  Pelago::DiscoveryManager _manager;
  Discovery _discovery;
  std::unique_ptr<RAIDMonitoring::RAIDMonitor> _monitor;
};

}  // namespace Program
