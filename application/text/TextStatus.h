#pragma once

#include <string>

#include "application/text/TextClock.h"
#include "application/text/TextScreen.h"
#include "application/watch/Overview.h"

namespace Program {

// "3 volumes, 1 degraded · 2 enclosures · last look 12:03:04", in less than `columns`: the last one
// stays free, where a terminal would break the line.
std::string statusText(const Screen& screen, const Overview& overview, const TextClock& clock,
                       int columns);

}  // namespace Program
