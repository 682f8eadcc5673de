#pragma once

#include <cstdint>
#include <string>

#include "application/session/Snapshot.h"
#include "application/session/Source.h"
#include "platform/pelago/Clock.h"
#include "platform/pelago/Logger.h"

namespace Program {

// How `watch` shows what it hears: one line for each event, without the line's end.
class WatchPrinter {
 public:
  using Moment = Pelago::Milliseconds;

  enum class VolumeEvent { Appeared, Updated, Disappeared };

  struct LogLine {
    Pelago::Logger::Level level;
    const std::string& category;
    const std::string& text;
  };

  WatchPrinter() = default;
  WatchPrinter(const WatchPrinter&) = delete;
  WatchPrinter& operator=(const WatchPrinter&) = delete;
  virtual ~WatchPrinter();

  virtual std::string deviceAppeared(Moment time, std::uint64_t uid) = 0;
  virtual std::string deviceDisappeared(Moment time, std::uint64_t uid) = 0;

  // `enclosure` is the one of the volume's last event when the volume is gone.
  virtual std::string volumeChanged(Moment time, VolumeEvent event, const VolumeSnapshot& volume,
                                    const DeviceSnapshot& enclosure) = 0;

  virtual std::string logged(Moment time, const LogLine& line) = 0;
  virtual std::string handles(Moment time, const HandleAccounts& accounts) = 0;
};

}  // namespace Program
