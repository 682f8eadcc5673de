#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

#include "application/session/Snapshot.h"
#include "application/session/Source.h"
#include "platform/pelago/Clock.h"
#include "platform/pelago/Logger.h"

namespace Program {

// What a watch tells, copied out of the model: it may be kept, and handed to other threads.

struct DeviceEvent {
  enum class Kind { Appeared, Disappeared };

  Kind kind;
  std::uint64_t uid;
};

struct VolumeEvent {
  enum class Kind { Appeared, Updated, Disappeared };

  Kind kind;
  VolumeSnapshot volume;     // without slots when it has disappeared
  DeviceSnapshot enclosure;  // then the one of the volume's last event
};

struct LogEvent {
  Pelago::Logger::Level level;
  std::string category;
  std::string text;
};

struct HandlesEvent {
  HandleAccounts accounts;
};

// Events that the program run for each event was too slow for.
struct DroppedEvent {
  std::size_t count;
};

struct WatchEvent {
  Pelago::Milliseconds time;
  std::variant<DeviceEvent, VolumeEvent, LogEvent, HandlesEvent, DroppedEvent> what;
};

}  // namespace Program
