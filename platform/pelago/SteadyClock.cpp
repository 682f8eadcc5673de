#include "platform/pelago/SteadyClock.h"

namespace Pelago {

SteadyClock::SteadyClock() : _start(std::chrono::steady_clock::now()) {}

SteadyClock::~SteadyClock() = default;

Milliseconds SteadyClock::now() const {
  const auto passed = std::chrono::steady_clock::now() - _start;
  return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
}

bool SteadyClock::waitUntil(Milliseconds moment) {
  for (Milliseconds present = now(); present < moment; present = now()) {
    if (_wake.sleep(moment == Never ? Never : moment - present)) return false;
  }
  return true;
}

void SteadyClock::interrupt() { _wake.wake(); }

}  // namespace Pelago
