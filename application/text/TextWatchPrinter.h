#pragma once

#include <map>
#include <string>
#include <vector>

#include "application/text/TextScreen.h"
#include "application/watch/WatchPrinter.h"

namespace Program {

// One line for people for each event: time, what happened, the volume, its level and state, the
// bays of its members, the enclosure.
class TextWatchPrinter : public WatchPrinter {
 public:
  explicit TextWatchPrinter(const Screen& screen) : _screen(screen) {}

  std::string deviceAppeared(Moment time, std::uint64_t uid) override;
  std::string deviceDisappeared(Moment time, std::uint64_t uid) override;
  std::string volumeChanged(Moment time, VolumeEvent event, const VolumeSnapshot& volume,
                            const DeviceSnapshot& enclosure) override;
  std::string logged(Moment time, const LogLine& line) override;
  std::string handles(Moment time, const HandleAccounts& accounts) override;

 private:
  std::string deviceLine(Moment time, const char* what, std::uint64_t uid) const;
  std::string bays(VolumeEvent event, const VolumeSnapshot& volume);

  Screen _screen;
  std::map<std::string, std::string> _lastBays;  // by the volume's UUID: who is gone is not asked
};

}  // namespace Program
