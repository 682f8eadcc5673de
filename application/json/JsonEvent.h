#pragma once

#include <string>

#include "application/watch/WatchEvent.h"

namespace Program {

// The word by which programs know the event: "raid-updated".
const char* nameOf(const WatchEvent& event);

// The event's JSON object, on one line and without its end.
std::string jsonOf(const WatchEvent& event);

}  // namespace Program
