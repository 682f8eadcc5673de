#pragma once

#include <cstdint>
#include <string>

#include "application/text/TextClock.h"
#include "application/text/TextEnclosures.h"
#include "application/text/TextScreen.h"
#include "application/watch/Instant.h"
#include "application/watch/KnownBays.h"
#include "application/watch/WatchListener.h"

namespace Program {

class WatchOutput;

// For people: a line for each cause, written when its moment is over: the time, what happened, the
// volume, its level and state, its disks by bay, the enclosure. Below them, if wanted, a line that
// says how things stand.
class TextWatch : public WatchListener {
 public:
  enum class Status { None, Shown };

  TextWatch(const Screen& screen, TextClock clock, WatchOutput& output, Status status);

  void heard(const WatchEvent& event) override;
  void instantEnded(const Overview& overview) override;

 private:
  void writeCauses();
  std::string lineFor(const Cause& cause);
  std::string line(Pelago::Milliseconds time, const DeviceEvent& event, const Cause& cause);
  std::string line(Pelago::Milliseconds time, const VolumeEvent& event, const Cause& cause);
  std::string line(Pelago::Milliseconds time, const LogEvent& event, const Cause& cause);
  std::string line(Pelago::Milliseconds time, const HandlesEvent& event, const Cause& cause);
  std::string line(Pelago::Milliseconds time, const DroppedEvent& event, const Cause& cause);
  std::string lostText(const VolumeEvent& lost, std::uint64_t departed);
  std::string placeText(const DeviceSnapshot& enclosure) const;

  Screen _screen;
  TextClock _clock;
  WatchOutput& _output;
  Status _status;
  Instant _instant;
  KnownBays _bays;
  TextEnclosures _enclosures;
};

}  // namespace Program
