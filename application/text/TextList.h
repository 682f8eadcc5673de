#pragma once

#include <string>
#include <vector>

#include "application/session/Snapshot.h"
#include "application/text/TextScreen.h"

namespace Program {

// A table for each enclosure: its volumes, and beside them their members by bay.
std::string listText(const Screen& screen, const std::vector<EnclosureVolumes>& enclosures);

}  // namespace Program
