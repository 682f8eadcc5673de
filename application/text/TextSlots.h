#pragma once

#include <string>
#include <vector>

#include "application/session/Snapshot.h"
#include "application/text/TextScreen.h"

namespace Program {

// A picture of each enclosure with its bays: in each the member, its volume and the volume's state.
std::string slotsText(const Screen& screen, const std::vector<EnclosureSlots>& enclosures);

}  // namespace Program
