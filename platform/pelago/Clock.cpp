#include "platform/pelago/Clock.h"

namespace Pelago {

Clock::~Clock() = default;

}  // namespace Pelago
