#include "tests/monitor/Scene.h"

#include <algorithm>
#include <functional>

namespace MonitorTest {

using namespace RAIDMonitoring;

Scene::Scene() : _monitor(std::make_unique<ScriptedMonitor>()) {
  _monitor->addClient(&_client);
  _monitor->makeHosts([this](const Pelago::Device& device) -> RAIDHost* {
    const auto host = _hosts.find(device.id);
    return host != _hosts.end() ? host->second.get() : nullptr;
  });
}

Scene::~Scene() {
  end();
  for (const auto& [id, host] : _hosts) {
    for (auto* volume : host->raidVolumes())
      host->removeRAIDVolume(volume);
  }
}

void Scene::end() {
  if (_monitor) _monitor->shutdown();
  _monitor.reset();
}

ScriptedHost* Scene::makeHost(std::uint64_t id) {
  auto* host = new ScriptedHost(id);
  _hosts[id] = Pelago::Reference<ScriptedHost>(host);
  return host;
}

std::pair<ScriptedHost*, ScriptedHost*> Scene::makeTwoHosts() {
  auto* a = makeHost(1);
  auto* b = makeHost(2);
  if (!std::less<RAIDHost*>()(a, b)) std::swap(a, b);
  return {a, b};
}

void Scene::appear(ScriptedHost* host) {
  _monitor->deviceAppeared({host->id(), Pelago::Device::ThunderboltType});
}

void Scene::disappear(ScriptedHost* host) {
  _monitor->deviceDisappeared({host->id(), Pelago::Device::ThunderboltType});
}

RAIDVolume* Scene::makeVolume(ScriptedHost* host, const std::string& uuid, RAIDVolumeState state) {
  _volumes.emplace_back(new RAIDVolume(host, uuid));
  RAIDVolume* volume = _volumes.back().get();
  volume->setState(state);
  return volume;
}

RAIDVolume* Scene::file(ScriptedHost* host, const std::string& uuid, RAIDVolumeState state) {
  RAIDVolume* volume = makeVolume(host, uuid, state);
  host->addRAIDVolume(volume);
  return volume;
}

StubMember* addMember(RAIDVolume* volume, const std::string& uuid, MemberState state) {
  auto* member = new StubMember(uuid, state);
  volume->addRAIDMember(member);
  return member;
}

}  // namespace MonitorTest
