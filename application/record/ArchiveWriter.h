#pragma once

#include <string>

#include "application/record/RegistryLook.h"

namespace Program {

// The archive that a look makes, as `ioreg -a -l -w0 -i` prints one: an XML property list. An entry
// with several parents is printed under each, but with its properties only the first time. What
// changes all the time and is read by nobody, busy times and counts of references, is left out.
std::string archiveOf(const RegistryLook& look);

}  // namespace Program
