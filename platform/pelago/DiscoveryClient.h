#pragma once

#include <vector>

#include "platform/pelago/Object.h"

namespace Pelago {

struct Device;
class DiscoveryManager;
struct Host;

// Hears from a DiscoveryManager which devices and hosts come, go or change.
//
// Ownership: its creator's; managers do not own it. A destroyed client leaves every manager it was
//            added to.
// Thread:    the event thread. A callback may add or destroy clients, itself included.
// Failure:   the base versions do nothing.
//
// The order of the virtual operations is part of the binary interface.
//
// \code
// #include <set>
//
// #include "platform/pelago/Device.h"
//
// class PresentDevices : public Pelago::DiscoveryClient {
//  public:
//   void deviceAppeared(const Pelago::Device& device) override { _ids.insert(device.id); }
//   void deviceDisappeared(const Pelago::Device& device) override { _ids.erase(device.id); }
//
//  private:
//   std::set<std::uint64_t> _ids;
// };
// \endcode
class PELAGO_EXPORT DiscoveryClient : public Object {
 public:
  // A client of no manager yet.
  DiscoveryClient() = default;
  ~DiscoveryClient() override;

  // A device has come, has left, or says something else of itself than before. It is valid during
  // the call.
  virtual void deviceAppeared(const Device& device);
  virtual void deviceDisappeared(const Device& device);
  virtual void deviceUpdated(const Device& device);

  // The same of a host computer.
  virtual void hostAppeared(const Host& host);
  virtual void hostDisappeared(const Host& host);
  virtual void hostUpdated(const Host& host);

 private:
  friend class DiscoveryManager;

  std::vector<DiscoveryManager*> _managers;  // one entry per registration
};

}  // namespace Pelago
