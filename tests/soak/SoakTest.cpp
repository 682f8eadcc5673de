#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Application.h"
#include "platform/pelago/DiscoveryManager.h"
#include "platform/pelago/Logger.h"
#include "platform/pelago/VirtualClock.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "tests/support/EnclosureBuilder.h"
#include "tests/support/HostTree.h"

namespace {

using RAIDMonitoring::RAIDMonitor;
using RAIDMonitoring::RAIDVolume;
using TestSupport::EnclosureBuilder;

constexpr std::uint64_t One = 0x0005000000000001;
constexpr std::uint64_t Two = 0x0005000000000002;
constexpr std::size_t Samples = 20;

// AddressSanitizer holds freed memory back: there is nothing to be seen in what is resident.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

class CountingClient : public RAIDMonitoring::RAIDMonitorClient {
 public:
  void RAIDAppeared(RAIDVolume* /*volume*/) override { ++appeared; }
  void RAIDDisappeared(RAIDVolume* /*volume*/) override { ++disappeared; }
  void RAIDUpdated(RAIDVolume* /*volume*/) override { ++updated; }

  std::uint64_t appeared = 0;
  std::uint64_t disappeared = 0;
  std::uint64_t updated = 0;
};

// In kilobytes.
std::size_t residentMemory() {
  std::ifstream file("/proc/self/statm");
  std::size_t all = 0;
  std::size_t resident = 0;
  file >> all >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

// Two enclosures whose disks and sets change all the time, in a round of changes that ends as it
// began: pulls and returns with new entries, states, and a set that spans both for a while. Devices
// stay: what a host that leaves keeps is memory, on purpose.
class Desk {
 public:
  Desk() {
    _one.complete().addDisks({1, 2}).addSet({"SET-A", {1, 2}});
    _two.complete().addDisks({1, 2}).addMember(2, "SET-A");
  }

  void change(std::uint64_t step) {
    switch (step % 8) {
      case 0:
        return _one.setStatus("SET-A", "Degraded");
      case 1:
        return _one.pullDisk(2);
      case 3:
        return MemoryRegistry::attach(_one.set("SET-A"), _two.member(2));  // spans
      case 4:
        return _one.returnDisk(2, "Failed");
      case 5:
        return MemoryRegistry::detach(_one.set("SET-A"), _two.member(2));
      case 6:
        // What hangs beneath two members counts once more at each look, on purpose: an end to that.
        MemoryRegistry::detach(_one.set("SET-A"), _one.member(2));
        return _one.setMemberStatus(2, "Online");
      case 7:
        return _one.setStatus("SET-A", "Online");
      default:
        return;
    }
  }

 private:
  TestSupport::HostTree _host;
  EnclosureBuilder _one{_host, TestSupport::twoBay(One)};
  EnclosureBuilder _two{_host, TestSupport::twoBay(Two, 1)};
};

std::uint64_t refreshesWanted() {
  const char* wanted = std::getenv("SOAK_REFRESHES");
  return wanted != nullptr ? std::strtoull(wanted, nullptr, 10) : isSanitized ? 2000 : 40000;
}

// Resident memory and the accounts, sampled while the registry changes under a monitor, refresh by
// refresh. What is kept on purpose must grow in numbers alone.
TEST(Soak, MemoryStaysFlatWhileTheRegistryChangesAllTheTime) {
  MemoryRegistry::reset();
  Pelago::Logger::setSink([](Pelago::Logger::Level, const std::string&, const std::string&) {});
  Pelago::VirtualClock clock;
  Pelago::Application application(clock);
  Desk desk;
  CountingClient client;
  Pelago::DiscoveryManager manager;
  const std::unique_ptr<RAIDMonitor> monitor(RAIDMonitor::CreateRAIDMonitor());
  monitor->addClient(&client);
  monitor->listenTo(&manager);
  for (const std::uint64_t uid : {One, Two})
    manager.deviceAppeared({uid, Pelago::Device::ThunderboltType});
  monitor->startMonitoring();

  const std::uint64_t wanted = refreshesWanted();
  const std::uint64_t perSample = std::max<std::uint64_t>(8, wanted / Samples / 8 * 8);
  std::size_t entriesKept = 0;
  std::size_t memory = 0;
  for (std::uint64_t step = 0; step < wanted; ++step) {
    desk.change(step);
    application.runThrough(application.now() + 2000);
    if ((step + 1) % perSample != 0) continue;
    const auto accounts = MemoryRegistry::accounts();
    std::uint64_t references = 0;
    for (const auto& entry : accounts.entries)
      references += entry.references;
    const std::size_t resident = residentMemory();
    std::printf(
        "%llu refreshes: %zu KB, %zu entries with %llu references, %zu iterators, "
        "%zu values\n",
        static_cast<unsigned long long>(step + 1), resident, accounts.entries.size(),
        static_cast<unsigned long long>(references), accounts.iterators, accounts.values);
    EXPECT_EQ(0U, accounts.iterators);
    EXPECT_EQ(0U, accounts.values);
    // The first samples are the measure: by then everything has been asked for once.
    if (entriesKept == 0) entriesKept = accounts.entries.size();
    EXPECT_EQ(entriesKept, accounts.entries.size());
    if (step + 1 <= 2 * perSample) memory = resident;
    EXPECT_TRUE(isSanitized || resident <= memory + 1024) << resident << " KB";
  }
  EXPECT_LT(wanted / 8, client.updated);
  EXPECT_LT(0U, client.appeared);
  monitor->shutdown();
  MemoryRegistry::reset();
  Pelago::Logger::setSink({});
}

}  // namespace
