#pragma once

#include "application/EmbeddedText.h"

namespace Program {

// page.html, page.css, page.js and page.policy.
extern const EmbeddedText PagePart[];
extern const std::size_t PagePartCount;

}  // namespace Program
