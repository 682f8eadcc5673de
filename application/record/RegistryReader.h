#pragma once

#include <optional>

#include "application/record/RegistryLook.h"

namespace Program {

// Everything that the registry holds now, beneath its root in the plane of services; none when it
// kept changing while it was looked at, or when it can't be read.
std::optional<RegistryLook> readRegistry();

}  // namespace Program
