#pragma once

#include <map>
#include <string>

#include "application/report/Story.h"

namespace Program {

// A text on its way into a page, in an element or in a quoted attribute.
std::string escapedForPage(const std::string& text);

// The template with each {{name}} replaced by its text, as it is. What a text holds is not looked
// at again. A name without a text throws std::logic_error.
std::string filledIn(const std::string& pageTemplate,
                     const std::map<std::string, std::string>& texts);

// The whole page, which needs nothing else. `recording` is what the story was read from.
std::string reportPage(const Story& story, const std::string& recording);

}  // namespace Program
