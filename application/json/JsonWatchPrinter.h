#pragma once

#include "application/watch/WatchPrinter.h"

namespace Program {

// One JSON object for each event.
class JsonWatchPrinter : public WatchPrinter {
 public:
  std::string deviceAppeared(Moment time, std::uint64_t uid) override;
  std::string deviceDisappeared(Moment time, std::uint64_t uid) override;
  std::string volumeChanged(Moment time, VolumeEvent event, const VolumeSnapshot& volume,
                            const DeviceSnapshot& enclosure) override;
  std::string logged(Moment time, const LogLine& line) override;
  std::string handles(Moment time, const HandleAccounts& accounts) override;
};

}  // namespace Program
