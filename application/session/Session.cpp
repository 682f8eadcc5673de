#include "application/session/Session.h"

#include <algorithm>
#include <string>

#include "application/progress/Progress.h"
#include "application/session/SessionObserver.h"
#include "model/RAIDHost.h"
#include "monitor/RAIDMonitor.h"
#include "platform/pelago/Logger.h"

namespace Program {

using Pelago::Logger;
using Pelago::Milliseconds;
using RAIDMonitoring::RAIDHost;
using RAIDMonitoring::RAIDMonitor;

Session::Session(Source& source, SessionObserver& observer, std::optional<Milliseconds> end)
    : _source(source),
      _observer(observer),
      _end(std::min(end.value_or(DueClock::NoEnd), DueClock::NoEnd)),
      _clock(source.clock(), _end, [this] { return endInstant(); }),
      _application(_clock),
      _discovery(_manager, observer),
      _monitor(RAIDMonitor::CreateRAIDMonitor()) {
  Logger::setSink([&observer](Logger::Level level, const std::string& category,
                              const std::string& text) { observer.logged(level, category, text); });
  _monitor->addClient(&observer);
  _monitor->listenTo(&_manager);
}

Session::~Session() {
  Logger::setSink([](Logger::Level, const std::string&, const std::string&) {});
  _monitor->shutdown();
  _monitor.reset();
  Logger::setSink({});
}

void Session::run() {
  if (_source.waits()) return runToTheEnd();
  _clock.showOn(std::make_unique<Progress>("Replaying", _end));
  runToTheEnd();
  _clock.showOn(nullptr);
}

void Session::runToTheEnd() {
  _monitor->startMonitoring();
  // One moment beyond the end instead of through it: the same things happen, and the clock never
  // waits for a moment up to the end at which nothing is due.
  if (runLooks()) _application.runBefore(_end + 1);
  _monitor->stopMonitoring();
  endInstant();
}

bool Session::endInstant() {
  _observer.instantEnded(*this);
  return !_application.quitting();
}

bool Session::runLooks() {
  for (auto moment = _source.nextLook(); moment && *moment <= _end; moment = _source.nextLook()) {
    if (!_application.runBefore(*moment)) return false;
    _source.prepareLook();
    _discovery.look();
  }
  return true;
}

std::vector<RAIDHost*> Session::hosts() const {
  std::vector<RAIDHost*> hosts = _monitor->raidHosts();
  std::sort(hosts.begin(), hosts.end(),
            [](const RAIDHost* a, const RAIDHost* b) { return a->deviceID() < b->deviceID(); });
  return hosts;
}

}  // namespace Program
