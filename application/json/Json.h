#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace Program {

// Keys stay in the order in which they are set.
using Json = nlohmann::ordered_json;

// On one line, ", " and ": " between the parts, everything but ASCII escaped. Text that is not
// UTF-8 is shown with replacement characters.
std::string written(const Json& value);

}  // namespace Program
