#pragma once

#include <string>
#include <vector>

#include "application/check/Expectations.h"
#include "application/session/Snapshot.h"

namespace Program {

// Performance data as plugins give it, "LABEL=VALUE;WARN;CRIT;MIN;MAX" with blanks between: how
// many enclosures, volumes and disks there are, how many of them are online; and for each volume,
// under its name, how many of its disks are online.
std::string performanceData(const std::vector<EnclosureVolumes>& enclosures,
                            const Expectations& expected);

// A name as a quoted label: on one line, without what ends a label or its quotes, and not too long.
std::string performanceLabel(const std::string& name);

}  // namespace Program
