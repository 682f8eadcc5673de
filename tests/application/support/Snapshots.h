#pragma once

#include <string>

#include "application/session/Snapshot.h"

namespace ProgramTest {

inline Program::DeviceSnapshot enclosureOf(unsigned bays, std::uint64_t uid = 7) {
  Program::DeviceSnapshot device;
  device.uid = uid;
  device.vendor = "Example Storage";
  device.model = bays == 2 ? "Two Bay" : "Five Bay";
  device.bayCount = bays;
  device.bridge = "IOService:/bridge";
  return device;
}

inline Program::VolumeSnapshot volumeNamed(const std::string& name,
                                           RAIDMonitoring::RAIDVolumeState state,
                                           std::vector<Program::MemberSnapshot> members) {
  Program::VolumeSnapshot volume;
  volume.uuid = "5E70000-0000-" + name;
  volume.name = name;
  volume.level = RAIDMonitoring::LevelMirror;
  volume.state = state;
  volume.members = std::move(members);
  return volume;
}

// What a name may try to do to the terminal of whoever reads it.
inline const std::string HostileName = "\x1b[2J\x1b]0;title\x07\n\u202eevil\u009b31m\xff";

// No control but the ends of lines, and nothing that turns the text around.
inline bool isHarmless(const std::string& text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && byte != '\n') || byte == 0x7f) return false;
  }
  return text.find("\u202e") == std::string::npos && text.find("\u009b") == std::string::npos;
}

}  // namespace ProgramTest
