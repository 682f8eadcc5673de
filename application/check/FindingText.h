#pragma once

#include <cstddef>
#include <string>

#include "application/session/Snapshot.h"

namespace Program {

// The words of `check`. None of them is printable yet.

// "1 volume", "2 volumes"
std::string countOf(std::size_t count, const char* noun);

// "Projects: mirror degraded, disk failed in bay 2 (Example Storage Two Bay 0x00030f1b7461e0a5)".
// Where no disk is in trouble, the bays of all. The UID is there because somebody may have two
// enclosures of one kind.
std::string headlineOf(const VolumeSnapshot& volume, const DeviceSnapshot& device);

// "Projects: mirror degraded, bay 1 online, bay 2 failed; Example Storage Two Bay, 2 bays, UID;
// UUID"
std::string detailsOf(const VolumeSnapshot& volume, const DeviceSnapshot& device);

}  // namespace Program
