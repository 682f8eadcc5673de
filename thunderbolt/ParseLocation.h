#pragma once

#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

// Reads the decimal number at the start of a location such as "1" or "7,0": white space, an
// optional sign, digits. A text that does not begin so, or a number outside -2147483648 to
// 2147483642, leaves `number` as it was.
void parseLocation(const char* text, int& number);

// The same with the location of an entry; an entry without one leaves `number` as it was.
void readLocation(io_registry_entry_t entry, int& number);

}  // namespace RAIDMonitoring
