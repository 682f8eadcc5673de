#include "platform/pelago/DiscoveryClient.h"

#include "platform/pelago/DiscoveryManager.h"

namespace Pelago {

DiscoveryClient::~DiscoveryClient() {
  for (DiscoveryManager* manager : _managers)
    manager->forget(this);
}

void DiscoveryClient::deviceAppeared(const Device& /*device*/) {}
void DiscoveryClient::deviceDisappeared(const Device& /*device*/) {}
void DiscoveryClient::deviceUpdated(const Device& /*device*/) {}
void DiscoveryClient::hostAppeared(const Host& /*host*/) {}
void DiscoveryClient::hostDisappeared(const Host& /*host*/) {}
void DiscoveryClient::hostUpdated(const Host& /*host*/) {}

}  // namespace Pelago
