#include "platform/pelago/VirtualClock.h"

namespace Pelago {

VirtualClock::VirtualClock() = default;

VirtualClock::~VirtualClock() = default;

Milliseconds VirtualClock::now() const { return _now; }

bool VirtualClock::waitUntil(Milliseconds moment) {
  if (moment <= _now) return true;
  if (moment == Never) {
    while (!_wake.sleep(Never)) {
    }
    return false;
  }
  if (_wake.taken()) return false;
  _now = moment;
  return true;
}

void VirtualClock::interrupt() { _wake.wake(); }

}  // namespace Pelago
