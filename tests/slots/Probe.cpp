// Not linked into anything: compiled for the compiler's dump of the classes' virtual tables.

#include "model/AppleRAIDMember.h"
#include "model/RAIDHost.h"
#include "model/RAIDMember.h"
#include "model/RAIDVolume.h"
#include "monitor/DeviceDiscovery.h"
#include "monitor/RAIDMonitor.h"
#include "monitor/RAIDMonitorClient.h"
#include "monitor/RAIDMonitorMac.h"
#include "monitor/UpdateTimer.h"
#include "platform/pelago/Clock.h"
#include "platform/pelago/DiscoveryClient.h"
#include "platform/pelago/Event.h"
#include "platform/pelago/Object.h"
#include "platform/pelago/PacedClock.h"
#include "platform/pelago/SteadyClock.h"
#include "platform/pelago/Timer.h"
#include "platform/pelago/VirtualClock.h"
#include "thunderbolt/PollingEvent.h"
#include "thunderbolt/ThunderboltDevice.h"

namespace Probe {

// GCC's dump leaves out the names of pure operations; one that is implemented has its name.
class Client : public RAIDMonitoring::RAIDMonitorClient {
 public:
  ~Client() override;
  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;
};

// Clang dumps the tables that are used: deleting an object uses its table.
template <class... Classes>
void use(Classes*... objects) {
  (delete objects, ...);
}

template void use(Client*, Pelago::Clock*, Pelago::DiscoveryClient*, Pelago::Event*,
                  Pelago::Object*, Pelago::PacedClock*, Pelago::SteadyClock*, Pelago::Timer*,
                  Pelago::VirtualClock*);
template void use(RAIDMonitoring::AppleRAIDMember*, RAIDMonitoring::PollingEvent*,
                  RAIDMonitoring::RAIDHost*, RAIDMonitoring::RAIDMember*,
                  RAIDMonitoring::RAIDMonitor*, RAIDMonitoring::RAIDMonitor::DeviceDiscovery*,
                  RAIDMonitoring::RAIDMonitor::UpdateTimer*, RAIDMonitoring::RAIDMonitorClient*,
                  RAIDMonitoring::RAIDMonitorMac*, RAIDMonitoring::RAIDVolume*,
                  RAIDMonitoring::ThunderboltDevice*);

}  // namespace Probe
