#pragma once

#include "application/EmbeddedText.h"

namespace Program {

// The recording that is shown where there is no live registry: its archives,
// "<milliseconds>.plist".
extern const EmbeddedText DemoArchive[];
extern const std::size_t DemoArchiveCount;

}  // namespace Program
