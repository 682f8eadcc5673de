#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "application/check/Assessment.h"

namespace Program {

// What a monitoring plugin prints: a line that begins with the severity and ends with performance
// data behind a bar, and a line for each finding below it. The output is UTF-8 in any locale.

// A text within such output: one line, and no bar, which would end the text.
std::string pluginText(std::string_view text);

// For what kept it from looking at all.
std::string pluginFailure(const std::string& reason);

// The worst finding comes first. `source` is named in the last line.
std::string pluginOutput(const std::vector<Finding>& findings,
                         const std::vector<EnclosureVolumes>& enclosures,
                         const Expectations& expected, const std::string& source);

}  // namespace Program
