#pragma once

#include <string>
#include <vector>

#include "application/watch/WatchEvent.h"

namespace Program {

// The environment of a program that is run for an event: the process's own, and the event's
// essentials in variables whose names begin with RAIDMONITOR_. Texts from the registry have no
// control characters there, and an end; the JSON object has them as they are.
//
//   RAIDMONITOR_EVENT        raid-updated
//   RAIDMONITOR_TIME         6000, in milliseconds
//   RAIDMONITOR_DEVICE       0x00030f1b7461e0a5
//   RAIDMONITOR_ENCLOSURE    Example Storage Two Bay
//   RAIDMONITOR_VOLUME_NAME  Projects
//   RAIDMONITOR_VOLUME_UUID
//   RAIDMONITOR_LEVEL        mirror
//   RAIDMONITOR_STATE        degraded
//   RAIDMONITOR_BAYS         1 2; a bay that is not known is ?; not set when the volume is gone
//   RAIDMONITOR_MEMBERS      for each disk BAY:STATE:UUID, with blanks between them
//   RAIDMONITOR_COUNT        of dropped events
//
// Only what the event has is set.
std::vector<std::string> environmentFor(const WatchEvent& event);

// Marks an event that is only a test: RAIDMONITOR_TEST=1.
constexpr const char* TestMark = "RAIDMONITOR_TEST=1";

}  // namespace Program
