#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "RAIDMonitoringExport.h"

namespace Pelago {
struct Device;
class DiscoveryManager;
}  // namespace Pelago

namespace RAIDMonitoring {

class RAIDHost;
class RAIDMonitorClient;
class RAIDVolume;

// The library's one entry object: turns discovered devices into hosts, re-reads them every two
// seconds, and tells its clients which RAID volumes appear, disappear or change.
//
// Ownership: the application's, destroyed with `delete` after stopMonitoring(). The monitor keeps
//            one reference on every host and on every announced volume. `delete` gives none of
//            them back and leaves the timer behind; shutdown() before it gives everything back.
// Thread:    the event thread only; nothing here locks.
// Failure:   no operation reports an error; null and unknown clients are ignored. Lack of memory
//            propagates as an exception.
//
// The order of the virtual operations is part of the binary interface.
//
// \code
// #include <memory>
//
// #include "platform/pelago/Application.h"
// #include "platform/pelago/DiscoveryManager.h"
//
// // Watches until somebody calls application.quit().
// void watch(Pelago::Application& application, Pelago::DiscoveryManager& discovery,
//            RAIDMonitoring::RAIDMonitorClient& client) {
//   using RAIDMonitoring::RAIDMonitor;
//   const std::unique_ptr<RAIDMonitor> monitor(RAIDMonitor::CreateRAIDMonitor());
//   monitor->addClient(&client);
//   monitor->listenTo(&discovery);  // which tells of the devices that are there already
//   monitor->startMonitoring();
//   application.run();
//   monitor->stopMonitoring();
//   monitor->shutdown();
// }
// \endcode
class RAIDMONITORING_EXPORT RAIDMonitor {
 public:
  // Its ears and its clock, the library's own: declared in the sources.
  class DeviceDiscovery;
  class UpdateTimer;

  // A new monitor, not started, which is the caller's.
  static RAIDMonitor* CreateRAIDMonitor();

  RAIDMonitor(const RAIDMonitor&) = delete;
  RAIDMonitor& operator=(const RAIDMonitor&) = delete;
  virtual ~RAIDMonitor();

  // Starts and stops the periodic refresh. Devices are followed either way.
  virtual void startMonitoring();
  virtual void stopMonitoring();

  // What discovery tells. A device that is reported twice yields two hosts.
  virtual void deviceAppeared(const Pelago::Device& device);
  virtual void deviceDisappeared(const Pelago::Device& device);

  // The host for a device, without a reference, or null for a device that hosts no RAID.
  virtual RAIDHost* RAIDHostFromDevice(const Pelago::Device& device) = 0;

  // Clients are told in the order of their registration. A client that is null or present already
  // is not added; one that is null or absent is not removed.
  void addClient(RAIDMonitorClient* client);
  void removeClient(RAIDMonitorClient* client);
  // Counted from 0; -1 when absent.
  int indexOfClient(RAIDMonitorClient* client) const;

  // Registers with the manager, once more for every call.
  void listenTo(Pelago::DiscoveryManager* manager);

  // One look at everything: re-reads every host and tells the clients the differences. The timer
  // calls it.
  void refresh();

  // The only writers of the announced volumes and of the references on them; the callers check that
  // there is something to tell. See monitor/RAIDMonitorNotifications.cpp.
  void notifyRAIDApparition(RAIDVolume* volume);
  void notifyRAIDDisparition(RAIDVolume* volume);
  void notifyRAIDUpdate(RAIDVolume* volume);

  // The hosts in the set's order; no references are taken.
  std::vector<RAIDHost*> raidHosts() const;

  // For applications that want everything back: stops and deletes the timer, leaves the discovery
  // managers, gives back the references on hosts and announced volumes, and tells the clients
  // nothing. Afterwards the monitor can only be deleted (or shut down again, which does nothing).
  void shutdown();

 protected:
  // Without clients or hosts, not started.
  RAIDMonitor();

 private:
  class Cycle;  // one refresh (RAIDMonitorRefresh.cpp)

  void tell(void (RAIDMonitorClient::*callback)(RAIDVolume*), RAIDVolume* volume);

  UpdateTimer* _updateTimer = nullptr;    // owned; the destructor leaves it behind
  DeviceDiscovery* _discovery = nullptr;  // owned
  std::vector<RAIDMonitorClient*> _clients;
  bool _monitoring = false;
  std::map<std::string, RAIDVolume*> _volumes;  // the announced ones by UUID, one reference each
  std::set<RAIDHost*> _hosts;                   // ordered by address, one reference each
};

}  // namespace RAIDMonitoring
