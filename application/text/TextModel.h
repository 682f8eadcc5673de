#pragma once

#include <string>
#include <vector>

#include "application/session/Snapshot.h"
#include "application/text/TextCharacters.h"
#include "platform/pelago/Clock.h"

namespace Program {

// The words of people's output. None of them is printable yet.

// "00:06.000" since the start, with hours where there are any.
std::string clockText(Pelago::Milliseconds time);

bool isNamed(const DeviceSnapshot& device);

// "Example Storage Two Bay"; a device that has not said who made it is "unknown enclosure".
std::string enclosureName(const DeviceSnapshot& device);

// "Example Storage Two Bay, 2 bays, 0x00030f1b7461e0a5"
std::string enclosureTitle(const DeviceSnapshot& device, Charset charset = Charset::Unicode);

// "mirror degraded"
std::string conditionOf(const VolumeSnapshot& volume);

// A volume without a name goes by its UUID.
std::string nameOf(const VolumeSnapshot& volume);

// Close to the words for programs.
std::string wordsFor(RAIDMonitoring::RAIDVolumeState state);
std::string wordsFor(RAIDMonitoring::MemberState state);

// The beginning of a UUID, enough to tell a handful of disks apart.
std::string shortened(const std::string& uuid);

// Members whose bay is not known come last.
std::vector<const MemberSnapshot*> membersByBay(const VolumeSnapshot& volume);

// What stands where volumes would stand: an enclosure that is coming up shows none yet.
const char* absenceOf(const DeviceSnapshot& device);

inline constexpr const char* NoEnclosures = "No enclosure is connected.\n";

}  // namespace Program
