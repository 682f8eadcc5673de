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
class PELAGO_EXPORT DiscoveryClient : public Object {
 public:
  DiscoveryClient() = default;
  ~DiscoveryClient() override;

  virtual void deviceAppeared(const Device& device);
  virtual void deviceDisappeared(const Device& device);
  virtual void deviceUpdated(const Device& device);
  virtual void hostAppeared(const Host& host);
  virtual void hostDisappeared(const Host& host);
  virtual void hostUpdated(const Host& host);

 private:
  friend class DiscoveryManager;

  std::vector<DiscoveryManager*> _managers;  // one entry per registration
};

}  // namespace Pelago
