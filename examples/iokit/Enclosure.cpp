// On the system's own registry: a real enclosure, named on the command line, in real time.

#include <cstdio>
#include <cstdlib>

#include "Enclosure.h"
#include "platform/pelago/SteadyClock.h"

std::uint64_t exampleEnclosure() {
  std::fputs("usage: watch_volumes UID (of a Thunderbolt switch, see ioreg)\n", stderr);
  std::exit(2);
}

std::unique_ptr<Pelago::Clock> exampleClock() { return std::make_unique<Pelago::SteadyClock>(); }
