// A complete application around the library: it watches one enclosure for five seconds and prints
// what becomes of its RAID volumes, with the bay of each disk. An application of yours has its own
// loop, which runs until quit(), and a discovery service of its own, which knows the devices' UIDs.

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "Enclosure.h"
#include "model/RAIDHost.h"
#include "model/RAIDMember.h"
#include "model/RAIDVolume.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "platform/pelago/Application.h"
#include "platform/pelago/Device.h"
#include "platform/pelago/DiscoveryManager.h"
#include "platform/pelago/Logger.h"

using namespace RAIDMonitoring;

// Callbacks come on the thread that runs the loop. A volume that is kept longer than the call needs
// a reference of its own: volume->ref(), and deref() when done.
class PrintingClient : public RAIDMonitorClient {
 public:
  void RAIDAppeared(RAIDVolume* volume) override { print("new", *volume); }
  void RAIDUpdated(RAIDVolume* volume) override { print("now", *volume); }
  void RAIDDisappeared(RAIDVolume* volume) override {
    // Its host may be gone by now: nothing but the volume's own fields is asked for.
    std::printf("gone %s\n", volume->name().c_str());
  }

 private:
  static void print(const char* what, const RAIDVolume& volume) {
    std::printf("%s %s: %s\n", what, volume.name().c_str(),
                volume.state() == VolumeOnline ? "online" : "not online");
    for (RAIDMember* member : volume.members()) {
      const int bay = volume.host()->locationOfMember(member, true);
      std::printf("  bay %d: %s\n", bay, member->state() == MemberOnline ? "online" : "not online");
    }
  }
};

int main(int argc, char** argv) {
  const std::uint64_t uid = argc > 1 ? std::strtoull(argv[1], nullptr, 0) : exampleEnclosure();
  // The library's diagnostics; without a sink of yours they go to standard error.
  Pelago::Logger::setSink([](Pelago::Logger::Level, const std::string&, const std::string&) {});

  const std::unique_ptr<Pelago::Clock> clock = exampleClock();
  Pelago::Application application(
      *clock);  // the loop: before everything that posts or starts timers
  Pelago::DiscoveryManager discovery;
  PrintingClient client;

  const std::unique_ptr<RAIDMonitor> monitor(RAIDMonitor::CreateRAIDMonitor());
  monitor->addClient(&client);
  monitor->listenTo(&discovery);
  monitor->startMonitoring();

  discovery.deviceAppeared(
      {uid, Pelago::Device::ThunderboltType});  // your discovery service says so
  application.runThrough(5000);                 // yours: application.run()

  monitor->stopMonitoring();
  monitor->shutdown();  // gives back every reference; nobody hears of it
  return 0;
}
