#include "platform/pelago/Event.h"

namespace Pelago {

Event::~Event() = default;

void Event::destroy() { delete this; }

}  // namespace Pelago
