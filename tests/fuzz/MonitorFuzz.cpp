#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <variant>
#include <vector>

#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Application.h"
#include "platform/pelago/DiscoveryManager.h"
#include "platform/pelago/Logger.h"
#include "platform/pelago/VirtualClock.h"
#include "platform/registry/Vocabulary.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/Archive.h"

namespace {

using MemoryRegistry::RegistryContent;
using RAIDMonitoring::RAIDVolume;

constexpr Pelago::Milliseconds TenRefreshes = 20'000;
constexpr std::size_t MostDevices = 8;

// Keeps every volume that it hears of, so that those that the monitor leaves behind can be ended.
class KeepingClient : public RAIDMonitoring::RAIDMonitorClient {
 public:
  void RAIDAppeared(RAIDVolume* volume) override { keep(volume); }
  void RAIDDisappeared(RAIDVolume* volume) override { keep(volume); }
  void RAIDUpdated(RAIDVolume* volume) override { keep(volume); }

  void keep(RAIDVolume* volume) {
    if (_volumes.insert(volume).second) volume->ref();
  }

  // Nobody else looks at the volumes any more.
  void end() {
    for (RAIDVolume* volume : _volumes) {
      while (volume->references() > 1)
        volume->deref();
      volume->deref();
    }
    _volumes.clear();
  }

 private:
  std::set<RAIDVolume*> _volumes;
};

std::vector<std::uint64_t> devicesIn(const RegistryContent& content) {
  std::vector<std::uint64_t> devices;
  for (const auto& entry : content.entries) {
    for (const auto& [key, value] : entry.description.properties) {
      const auto* number = std::get_if<MemoryRegistry::Number>(&value.variant());
      if (key == kSwitchUIDKey && number != nullptr) devices.push_back(valueOf(*number));
    }
    if (devices.size() >= MostDevices) break;
  }
  return devices;
}

void askForSlots(RAIDMonitoring::RAIDHost& host) {
  for (const RAIDVolume* volume : host.raidVolumes()) {
    for (RAIDMonitoring::RAIDMember* member : volume->members()) {
      for (const bool infer : {false, true}) {
        host.locationOfMember(member, infer);
      }
    }
  }
  host.locationOfMember(nullptr, true);
  for (int slot = -1; slot <= 6; ++slot)
    host.locationOfNotMember(slot);
}

void watch(const std::vector<std::uint64_t>& devices) {
  Pelago::VirtualClock clock;
  Pelago::Application application(clock);
  Pelago::DiscoveryManager manager;
  KeepingClient client;
  const std::unique_ptr<RAIDMonitoring::RAIDMonitor> monitor(
      RAIDMonitoring::RAIDMonitor::CreateRAIDMonitor());
  monitor->addClient(&client);
  monitor->listenTo(&manager);
  monitor->startMonitoring();
  for (const std::uint64_t uid : devices)
    manager.deviceAppeared({uid, Pelago::Device::ThunderboltType});
  application.runThrough(TenRefreshes);
  for (RAIDMonitoring::RAIDHost* host : monitor->raidHosts()) {
    askForSlots(*host);
    for (RAIDVolume* volume : host->raidVolumes())
      client.keep(volume);
  }
  monitor->shutdown();
  client.end();
}

}  // namespace

// No archive breaks the monitor: ten refreshes, and all slot queries. Whatever happens, no iterator
// and no value stays behind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Pelago::Logger::setSink([](Pelago::Logger::Level, const std::string&, const std::string&) {});
  try {
    RegistryContent content =
        MemoryRegistry::parseArchive(reinterpret_cast<const char*>(data), size, "input");
    const auto devices = devicesIn(content);
    MemoryRegistry::reset();
    MemoryRegistry::replaceContent(std::move(content));
    watch(devices);
    const auto accounts = MemoryRegistry::accounts();
    if (accounts.iterators != 0 || accounts.values != 0) std::abort();
  } catch (const MemoryRegistry::ArchiveError&) {
  }
  return 0;
}
