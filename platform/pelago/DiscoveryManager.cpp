#include "platform/pelago/DiscoveryManager.h"

#include <algorithm>
#include <utility>

#include "platform/pelago/DiscoveryClient.h"

namespace Pelago {

namespace {

template <class T>
bool contains(const std::vector<T>& things, const T& thing) {
  return std::find(things.begin(), things.end(), thing) != things.end();
}

template <class T>
void removeAll(std::vector<T>& things, const T& thing) {
  things.erase(std::remove(things.begin(), things.end(), thing), things.end());
}

}  // namespace

// While one goes on, the clients keep their places.
class DiscoveryManager::Round {
 public:
  explicit Round(DiscoveryManager& manager) : _manager(manager) { ++_manager._rounds; }
  ~Round() {
    --_manager._rounds;
    _manager.closeRanks();
  }
  Round(const Round&) = delete;
  Round& operator=(const Round&) = delete;

 private:
  DiscoveryManager& _manager;
};

DiscoveryManager::~DiscoveryManager() {
  for (DiscoveryClient* client : _clients) {
    if (client != nullptr) removeAll(client->_managers, this);
  }
}

void DiscoveryManager::addClient(DiscoveryClient* client) {
  if (client == nullptr) return;
  const Round round(*this);
  replay(enlist(client), client);
}

// Taking the place first makes the last step one that can't fail: either both sides know of the
// registration or neither does.
std::size_t DiscoveryManager::enlist(DiscoveryClient* client) {
  const std::size_t place = _clients.size();
  _clients.push_back(nullptr);
  client->_managers.push_back(this);
  _clients[place] = client;
  return place;
}

// Works on copies, because a callback may report to the manager. What has left meanwhile is not
// replayed: the client was told so already.
void DiscoveryManager::replay(std::size_t place, DiscoveryClient* client) {
  for (const Device& device : std::vector<Device>(_devices)) {
    if (_clients[place] == client && contains(_devices, device)) client->deviceAppeared(device);
  }
  for (const Host& host : std::vector<Host>(_hosts)) {
    if (_clients[place] == client && contains(_hosts, host)) client->hostAppeared(host);
  }
}

void DiscoveryManager::removeClient(DiscoveryClient* client) {
  if (client == nullptr) return;
  removeAll(client->_managers, this);
  forget(client);
}

void DiscoveryManager::forget(DiscoveryClient* client) {
  std::replace(_clients.begin(), _clients.end(), client, static_cast<DiscoveryClient*>(nullptr));
  closeRanks();
}

void DiscoveryManager::closeRanks() {
  if (_rounds == 0) removeAll(_clients, static_cast<DiscoveryClient*>(nullptr));
}

// Clients that join during the round are not told: their replay has told them what they need.
void DiscoveryManager::tell(const std::function<void(DiscoveryClient&)>& callback) {
  const Round round(*this);
  const std::size_t count = _clients.size();
  for (std::size_t place = 0; place < count; ++place) {
    if (_clients[place] != nullptr) callback(*_clients[place]);
  }
}

// Each report is copied into its callback, because the caller's may be an element of devices().
// What is recorded changes first, so that a client that joins during the round hears what is true.

void DiscoveryManager::deviceAppeared(const Device& device) {
  const auto callback = [device](DiscoveryClient& client) { client.deviceAppeared(device); };
  if (!contains(_devices, device)) _devices.push_back(device);
  tell(callback);
}

void DiscoveryManager::deviceDisappeared(const Device& device) {
  const Device leaving = device;
  removeAll(_devices, leaving);
  tell([leaving](DiscoveryClient& client) { client.deviceDisappeared(leaving); });
}

void DiscoveryManager::deviceUpdated(const Device& device) {
  tell([device](DiscoveryClient& client) { client.deviceUpdated(device); });
}

void DiscoveryManager::hostAppeared(const Host& host) {
  if (!contains(_hosts, host)) _hosts.push_back(host);
  tell([host](DiscoveryClient& client) { client.hostAppeared(host); });
}

void DiscoveryManager::hostDisappeared(const Host& host) {
  Host leaving = host;
  removeAll(_hosts, leaving);
  tell(
      [leaving = std::move(leaving)](DiscoveryClient& client) { client.hostDisappeared(leaving); });
}

void DiscoveryManager::hostUpdated(const Host& host) {
  tell([host](DiscoveryClient& client) { client.hostUpdated(host); });
}

}  // namespace Pelago
