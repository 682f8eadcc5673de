#include "monitor/RAIDMonitor.h"

#include <algorithm>
#include <utility>

#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "monitor/DeviceDiscovery.h"
#include "monitor/UpdateTimer.h"
#include "platform/pelago/DiscoveryManager.h"

namespace RAIDMonitoring {

namespace {

constexpr unsigned RefreshPeriod = 2000;  // milliseconds

}  // namespace

RAIDMonitor::RAIDMonitor() {
  // Plain pointers on purpose: what has been made is left behind when the next step throws.
  _discovery = new DeviceDiscovery(this);
  _updateTimer = new UpdateTimer(this);
}

// Kept on purpose: hosts and volumes do not get their references back, clients are told nothing,
// and the timer is left behind as it is. shutdown() is for applications that want them back.
RAIDMonitor::~RAIDMonitor() {
  delete _discovery;
  _discovery = nullptr;
}

void RAIDMonitor::shutdown() {
  if (_updateTimer != nullptr) stopMonitoring();
  delete std::exchange(_updateTimer, nullptr);
  delete std::exchange(_discovery, nullptr);
  for (const auto& [uuid, volume] : std::exchange(_volumes, {}))
    volume->deref();
  for (RAIDHost* host : std::exchange(_hosts, {}))
    host->deref();
}

void RAIDMonitor::startMonitoring() {
  _monitoring = true;
  if (_updateTimer != nullptr) _updateTimer->start(RefreshPeriod);
}

void RAIDMonitor::stopMonitoring() {
  if (_updateTimer != nullptr) _updateTimer->stop();
  _monitoring = false;
}

void RAIDMonitor::addClient(RAIDMonitorClient* client) {
  if (client != nullptr && indexOfClient(client) < 0) _clients.push_back(client);
}

void RAIDMonitor::removeClient(RAIDMonitorClient* client) {
  _clients.erase(std::remove(_clients.begin(), _clients.end(), client), _clients.end());
}

int RAIDMonitor::indexOfClient(RAIDMonitorClient* client) const {
  const auto place = std::find(_clients.begin(), _clients.end(), client);
  return place == _clients.end() ? -1 : static_cast<int>(place - _clients.begin());
}

void RAIDMonitor::listenTo(Pelago::DiscoveryManager* manager) { manager->addClient(_discovery); }

std::vector<RAIDHost*> RAIDMonitor::raidHosts() const { return {_hosts.begin(), _hosts.end()}; }

}  // namespace RAIDMonitoring
