#pragma once

#include <cstdint>
#include <memory>

#include "platform/pelago/Clock.h"

// What the example watches when it is given no UID, and how its time passes. Two files answer, one
// per registry that the library may have been built on.

// The UID of an enclosure's Thunderbolt switch.
std::uint64_t exampleEnclosure();

std::unique_ptr<Pelago::Clock> exampleClock();
