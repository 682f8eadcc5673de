#pragma once

#include <set>
#include <string>
#include <vector>

#include "tests/faults/Life.h"

namespace FaultTest {

// Where a monitor that went through a fault differs, some refreshes after it, from one that did
// not, one line each; those differences left out that the monitor's rules make lasting:
//
// - A device whose switch was not found when it arrived stays a host without identity and volumes.
// - What the switch said of vendor and model is read once, at arrival.
// - The first PCI device that the bring-up met is the bridge for good, whichever that was.
// - A status or level that is none of those known leaves the last known one in place: what the
//   fault kept from being read then is not made up for. (`unreadable` are the UUIDs that this is
//   about.)
// - One enclosure more or less reports a spanning set: the mark "cross-device" of its volumes in
// the
//   other enclosures follows from that.
//
// and, in the first refresh only:
//
// - A member that is new once more, outside the bridge, marks its volume as "cross-device" until
// the
//   next status is read.
// - A bring-up that was held up may end after the refresh: its volumes are announced by the next.
// - A member that is there as a RAID set only is found at first sight, which is made anew, and not
// by
//   later looks.
std::vector<std::string> differences(const View& clean, const View& faulted,
                                     const std::set<std::string>& unreadable, bool firstRefresh);

// Whether the client has been told of exactly the volumes that there are.
std::vector<std::string> unreported(const View& view);

}  // namespace FaultTest
