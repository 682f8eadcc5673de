#pragma once

#include <cstdint>
#include <limits>

#include "platform/pelago/PelagoExport.h"

namespace Pelago {

// A moment or a span, in milliseconds. Moments count from the clock's own start.
using Milliseconds = std::int64_t;

// Where an Application gets its time from, and how it waits.
//
// Ownership: the Application's creator's; the clock outlives the Application.
// Thread:    now() and waitUntil() on the event thread; interrupt() from any thread and from a
//            signal handler.
// Failure:   making a clock throws std::system_error when the process is out of descriptors;
//            nothing else here fails.
//
// The order of the virtual operations is part of the binary interface.
class PELAGO_EXPORT Clock {
 public:
  // The moment that does not come: a wait for it ends by interrupt() only.
  static constexpr Milliseconds Never = std::numeric_limits<Milliseconds>::max();

  virtual ~Clock();

  // The time since the clock's start. It never goes back.
  virtual Milliseconds now() const = 0;

  // Waits until `moment`, or until interrupt(). False when it was interrupted. A moment that has
  // passed is no wait.
  virtual bool waitUntil(Milliseconds moment) = 0;

  // Ends a wait that is going on, or else the next one that has to wait. Async-signal-safe.
  virtual void interrupt() = 0;
};

}  // namespace Pelago
