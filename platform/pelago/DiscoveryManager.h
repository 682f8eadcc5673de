#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "platform/pelago/Device.h"
#include "platform/pelago/Host.h"
#include "platform/pelago/PelagoExport.h"

namespace Pelago {

class DiscoveryClient;

// Tells its clients which devices and hosts there are. The embedding application (or a service of
// its own) feeds it with what it finds; clients hear of it synchronously, in the order in which
// they were added.
//
// Ownership: the embedding application's. Clients are not its own; when it ends they are simply no
//            longer called.
// Thread:    the event thread only.
//            A client may add, remove or destroy clients from inside a callback, and report to the
//            manager; it must not destroy the manager.
// Failure:   nothing here fails. A null client is ignored. An exception from a client leaves
//            through the operation that told it; the clients behind it are not told.
//
// \code
// #include <algorithm>
//
// // What a discovery service of yours has found now: the manager hears what is different.
// void report(Pelago::DiscoveryManager& manager, const std::vector<Pelago::Device>& found) {
//   const auto has = [](const std::vector<Pelago::Device>& devices, const Pelago::Device& device) {
//     return std::find(devices.begin(), devices.end(), device) != devices.end();
//   };
//   const std::vector<Pelago::Device> before = manager.devices();  // a copy: it changes below
//   for (const Pelago::Device& device : before) {
//     if (!has(found, device)) manager.deviceDisappeared(device);
//   }
//   for (const Pelago::Device& device : found) {
//     if (!has(before, device)) manager.deviceAppeared(device);
//   }
// }
// \endcode
class PELAGO_EXPORT DiscoveryManager {
 public:
  // Without clients, and with nothing present.
  DiscoveryManager() = default;
  ~DiscoveryManager();
  DiscoveryManager(const DiscoveryManager&) = delete;
  DiscoveryManager& operator=(const DiscoveryManager&) = delete;

  // Registers the client and at once reports to it the devices and hosts that are present, in the
  // order of their appearance. A client added twice is called twice.
  void addClient(DiscoveryClient* client);

  // Undoes every registration of the client.
  void removeClient(DiscoveryClient* client);

  // What discovery has to tell. A device that is reported twice is passed on twice; one that leaves
  // is forgotten.
  void deviceAppeared(const Device& device);
  void deviceDisappeared(const Device& device);
  void deviceUpdated(const Device& device);
  void hostAppeared(const Host& host);
  void hostDisappeared(const Host& host);
  void hostUpdated(const Host& host);

  // The devices that are present, in the order of their appearance.
  const std::vector<Device>& devices() const { return _devices; }

 private:
  friend class DiscoveryClient;

  class Round;

  std::size_t enlist(DiscoveryClient* client);
  void replay(std::size_t place, DiscoveryClient* client);
  void tell(const std::function<void(DiscoveryClient&)>& callback);
  void forget(DiscoveryClient* client);
  void closeRanks();

  std::vector<DiscoveryClient*> _clients;  // null where one left during a round of calls
  std::vector<Device> _devices;
  std::vector<Host> _hosts;
  int _rounds = 0;  // rounds of calls going on, one inside the other
};

}  // namespace Pelago
