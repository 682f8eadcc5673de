#pragma once

#include <string>
#include <vector>

#include "application/watch/KnownBays.h"

namespace Program {

// The words for a volume's disks, what is new about them first: "bay 4, was: absent; bays 3 5:
// online". Where all is well and nothing new, the bays suffice: "bays 1 2". Not printable yet.
std::string disksText(const std::vector<DiskNews>& disks);

}  // namespace Program
