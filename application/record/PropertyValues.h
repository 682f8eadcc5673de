#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "platform/registry/Registry.h"

namespace Program {

// A copy of the value, with everything in it. What is no boolean, number, text, data, array or
// dictionary becomes null.
nlohmann::json valueOf(CFTypeRef value);

// UTF-8; empty for null.
std::string textOf(CFStringRef string);

}  // namespace Program
