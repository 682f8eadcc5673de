#include "application/report/SettledSource.h"

namespace Program {

bool SettledSource::Clock::waitUntil(Pelago::Milliseconds moment) {
  if (moment > _clock.now()) _settled();
  return _clock.waitUntil(moment);
}

}  // namespace Program
